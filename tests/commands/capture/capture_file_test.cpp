#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// The file that a capture writes.
namespace capture_file_test {

using namespace testing_support;

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

constexpr const char* desk = R"(
    display 1 1000x800 scale 1
    app Browser pid 40 frontmost
        window 5 "Cover" at 0,0 size 1000x800
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 100x100
        window 8 "Outbox" at 500,500 size 100x100
)";

std::string escaped(const std::string& path) {
  std::string text;
  for (const char c : path) text += c == '/' ? std::string("\\/") : std::string(1, c);
  return text;
}

std::string cannotWrite(const std::string& path) {
  return failure("cannot write " + escaped(path));
}

Result captureTo(const std::string& path, std::vector<std::string> faults = {}) {
  TestMac mac(desk, std::move(faults));
  return mac.driverWith({"capture", "Notes", path});
}

TEST(capture_file, is_a_picture_of_the_rectangle_in_pixels) {
  const TemporaryFolder folder;

  const Result run = captureTo(folder.path("a picture.png"));

  EXPECT_EQ(run.status, 0);
  const PictureFile picture = readPicture(folder.path("a picture.png"));
  EXPECT_EQ(picture.width, 600);
  EXPECT_EQ(picture.height, 600);
}

TEST(capture_file, is_mid_grey_where_no_chosen_window_is_even_behind_others) {
  const TemporaryFolder folder;

  captureTo(folder.path("out.png"));

  const PictureFile picture = readPicture(folder.path("out.png"));
  EXPECT_EQ(picture.at(300, 300), "#808080FF");
  EXPECT_EQ(picture.at(590, 10), "#808080FF");
  EXPECT_NE(picture.at(50, 60), "#808080FF");
  EXPECT_NE(picture.at(550, 560), "#808080FF");
  // Both windows look alike: what lies over one of them is not in the picture.
  EXPECT_EQ(picture.at(50, 60), picture.at(550, 560));
}

TEST(capture_file, replaces_an_older_one) {
  const TemporaryFolder folder;
  folder.write("out.png", "old");

  const Result run = captureTo(folder.path("out.png"));

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(readPicture(folder.path("out.png")).width, 600);
  EXPECT_EQ(folder.names(), Names{"out.png"});
}

TEST(capture_file, in_a_missing_directory_cannot_be_written) {
  const TemporaryFolder folder;
  const std::string path = folder.path("missing/out.png");

  EXPECT_EQ(seen(captureTo(path)), cannotWrite(path));
  EXPECT_TRUE(folder.names().empty());
}

TEST(capture_file, below_a_file_cannot_be_written) {
  const TemporaryFolder folder;
  folder.write("file", "content");
  const std::string path = folder.path("file/out.png");

  EXPECT_EQ(seen(captureTo(path)), cannotWrite(path));
  EXPECT_EQ(folder.read("file"), "content");
}

TEST(capture_file, is_never_a_directory) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path("out.png"));

  EXPECT_EQ(seen(captureTo(folder.path("out.png"))), cannotWrite(folder.path("out.png")));
  EXPECT_EQ(seen(captureTo(folder.path("new/"))), cannotWrite(folder.path("new/")));
  EXPECT_TRUE(fs::is_empty(folder.path("out.png")));
  EXPECT_EQ(folder.names(), Names{"out.png"});
}

TEST(capture_file, is_never_written_through_a_link) {
  const TemporaryFolder folder;
  folder.write("precious", "content");
  fs::create_symlink("precious", folder.path("out.png"));
  fs::create_symlink("nothing", folder.path("dangling.png"));

  EXPECT_EQ(seen(captureTo(folder.path("out.png"))), cannotWrite(folder.path("out.png")));
  EXPECT_EQ(seen(captureTo(folder.path("dangling.png"))), cannotWrite(folder.path("dangling.png")));

  EXPECT_EQ(folder.read("precious"), "content");
  EXPECT_TRUE(fs::is_symlink(folder.path("out.png")));
  EXPECT_TRUE(fs::is_symlink(folder.path("dangling.png")));
  EXPECT_EQ(folder.names(), (Names{"dangling.png", "out.png", "precious"}));
}

TEST(capture_file, that_is_a_fifo_is_refused_and_not_waited_for) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.path("out.png").c_str(), 0600), 0);

  EXPECT_EQ(seen(captureTo(folder.path("out.png"))), cannotWrite(folder.path("out.png")));
  EXPECT_TRUE(fs::is_fifo(folder.path("out.png")));
}

TEST(capture_file, that_is_a_device_is_refused) {
  EXPECT_EQ(seen(captureTo("/dev/full")), cannotWrite("/dev/full"));
  EXPECT_EQ(seen(captureTo("/dev/null")), cannotWrite("/dev/null"));
}

TEST(capture_file, without_a_name_cannot_be_written) {
  EXPECT_EQ(seen(captureTo("")), cannotWrite(""));
}

TEST(capture_file, stays_as_it_was_when_the_picture_cannot_be_had_or_written) {
  for (const char* fault :
       {"image.png 1 absent", "streams.replace-file 1 refused", "share.screenshot 1 thrown"}) {
    SCOPED_TRACE(fault);
    const TemporaryFolder folder;
    folder.write("out.png", "old");
    const std::string path = folder.path("out.png");

    const Result run = captureTo(path, {fault});

    if (std::string_view(fault) != "share.screenshot 1 thrown") {
      EXPECT_EQ(seen(run), cannotWrite(path));
    } else {
      EXPECT_EQ(seen(run),
                success(R"({"error":"Error Domain=Simulated Code=1 \"a fault\"","ok":false})"));
    }
    EXPECT_EQ(folder.read("out.png"), "old");
    EXPECT_EQ(folder.names(), Names{"out.png"});
  }
}

TEST(capture_file, may_have_any_name) {
  const TemporaryFolder folder;
  const std::string name = "Bild — ü \"1\".png";

  EXPECT_EQ(captureTo(folder.path(name)).status, 0);
  EXPECT_EQ(folder.names(), Names{name});
}

TEST(capture_file, is_not_written_under_another_name_than_the_one_given) {
  const TemporaryFolder folder;

  const Result run = captureTo(folder.path("bad\xFF.png"));

  EXPECT_EQ(seen(run), cannotWrite(folder.path("bad\uFFFD.png")));
  EXPECT_TRUE(fs::is_empty(folder.path("")));
}

}  // namespace capture_file_test
