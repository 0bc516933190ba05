#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/image.h"
#include "platform/types.h"

/// Panels that cover whole screens, and the application that shows them. What is on a panel is
/// described as values; places are points from the panel's lower left corner, y grows upwards.
/// Main flow only.
namespace cover {

enum class Weight : std::uint8_t { medium, semibold };

/// The system's font.
struct Font {
  double size = 0;  // points
  Weight weight = Weight::medium;
  friend bool operator==(const Font&, const Font&) = default;
};

/// One line of centred white text.
struct Label {
  std::string text;
  Font font;
  double alpha = 1;
  platform::Rect frame;
};

/// A picture, scaled in proportion to fit its frame.
struct Picture {
  image::Image image;
  platform::Rect frame;
  bool isRound = false;  // clipped to a circle, with a white border 2 points wide, alpha 0.85
};

/// A dark, blurred surface that is always drawn as active, under a black layer, with pictures and
/// labels on it, later ones above.
struct View {
  platform::Size size;
  double dimmingAlpha = 0;
  std::vector<Picture> pictures;
  std::vector<Label> labels;
};

/// A panel at a window level. It can never become key, takes no mouse events, joins all spaces and
/// stays when its application is not active, or hidden.
struct Panel {
  platform::Rect frame;  // as `screens` gives it
  std::int64_t level = 0;
  View view;
};

/// The frames of the connected screens in the platform's order, in its own global points: y grows
/// upwards from the lower edge of the first.
std::vector<platform::Rect> screens();

/// The size of a label that fits this text.
platform::Size measure(const std::string& text, const Font& font);

/// Shows a panel in front of all that lies below its level, without activating the application;
/// it is drawn when this returns. The result names it.
std::size_t show(const Panel& panel);

/// Changes a label of a panel; `label` is its index in the view.
void setLabel(std::size_t panel, std::size_t label, const std::string& text,
              const platform::Rect& frame);

/// Frames a panel anew, and shows it in front again.
void place(std::size_t panel, const platform::Rect& frame);

/// Takes a panel away. Its name is not used again.
void close(std::size_t panel);

/// Has `handler` run on the main flow when screens have come, gone, moved or changed their size.
void onScreenChange(std::function<void()> handler);

/// Has `handler` run on the main flow when the application is asked to terminate, in place of an
/// answer.
void onTerminationRequest(std::function<void()> handler);

/// Runs the application: the main flow does what comes to it, as in loop::park. Returns only if the
/// application's loop ends by itself.
void runApplication();

}  // namespace cover
