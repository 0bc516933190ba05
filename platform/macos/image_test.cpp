#include "platform/image.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/macos/owned.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/images.h"

namespace {

using standins::ImageFault;

class pictures : public standins::AdapterTest {
 protected:
  void TearDown() override {
    standins::setImageFault(ImageFault::none);
    AdapterTest::TearDown();
  }

  static image::Image picture(CGImageRef native) {
    return image::Image(macos::shared(macos::Owned(native)));
  }
};

const std::string pixels("p\0x", 3);

}  // namespace

TEST_F(pictures, pixels_are_the_raw_bytes) {
  EXPECT_EQ(image::pixels(picture(standins::image(pixels))), pixels);
  EXPECT_EQ(image::pixels(picture(standins::image(""))), "");
}

TEST_F(pictures, pixels_are_absent_without_data) {
  EXPECT_EQ(image::pixels(picture(standins::imageWithoutProvider())), std::nullopt);
  EXPECT_EQ(image::pixels(picture(standins::imageWithoutData())), std::nullopt);
}

TEST_F(pictures, png_encodes_one_picture_in_memory) {
  EXPECT_EQ(image::png(picture(standins::image(pixels))), "\"public.png\" " + pixels);
}

TEST_F(pictures, png_is_absent_when_it_cannot_be_encoded) {
  const image::Image image = picture(standins::image(pixels));
  standins::setImageFault(ImageFault::noDestination);
  EXPECT_EQ(image::png(image), std::nullopt);
  standins::setImageFault(ImageFault::notFinalized);
  EXPECT_EQ(image::png(image), std::nullopt);
}

TEST_F(pictures, decode_gives_the_picture_in_some_bytes_upright) {
  EXPECT_EQ(image::pixels(image::decode(pixels).value()), "upright pixels of " + pixels);
}

TEST_F(pictures, decode_fails_without_a_readable_picture) {
  standins::setImageFault(ImageFault::noSource);
  EXPECT_FALSE(image::decode("no picture"));
  standins::setImageFault(ImageFault::noImage);
  EXPECT_FALSE(image::decode("no picture"));
}

TEST_F(pictures, load_gives_the_picture_in_a_regular_file) {
  const std::string path = testing::TempDir() + "driver-picture-" + std::to_string(getpid());
  std::ofstream(path) << pixels;
  EXPECT_EQ(image::pixels(image::load(path).value()), "upright pixels of " + pixels);
  std::filesystem::remove(path);
}

TEST_F(pictures, load_refuses_what_is_no_regular_file) {
  const std::string path = testing::TempDir() + "driver-fifo-" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_FALSE(image::load(path));
  std::filesystem::remove(path);
  EXPECT_FALSE(image::load(path));
  EXPECT_FALSE(image::load(""));
  EXPECT_FALSE(image::load("/dev/null"));
}
