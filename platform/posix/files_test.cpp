#include "platform/posix/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class Files : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "files-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
    previousMask_ = umask(022);
  }

  void TearDown() override {
    umask(previousMask_);
    fs::remove_all(folder_);
  }

  std::string path(const std::string& name) const { return folder_ + "/" + name; }

  void write(const std::string& name, const std::string& contents) const {
    std::ofstream(path(name)) << contents;
  }

  std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  mode_t permissions(const std::string& name) const {
    struct stat status = {};
    EXPECT_EQ(lstat(path(name).c_str(), &status), 0);
    return status.st_mode & 0777;
  }

  Names names() const {
    Names names = posix::listDirectory(folder_).value();
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::string folder_;
  mode_t previousMask_ = 0;
};
using replaceFile = Files;
using listDirectory = Files;
using fileExists = Files;
using resolvedPath = Files;
using readFile = Files;
using lockFile = Files;

const std::string picture("a\0b\n", 4);

TEST_F(replaceFile, creates_a_file_with_the_permissions_of_any_new_file) {
  EXPECT_TRUE(posix::replaceFile(path("new.png"), picture));
  EXPECT_EQ(read("new.png"), picture);
  EXPECT_EQ(permissions("new.png"), 0644u);
  EXPECT_EQ(names(), Names{"new.png"});
}

TEST_F(replaceFile, replaces_a_file_and_keeps_its_permissions) {
  write("old.png", "a much longer text than the new one");
  ASSERT_EQ(chmod(path("old.png").c_str(), 0606), 0);
  EXPECT_TRUE(posix::replaceFile(path("old.png"), picture));
  EXPECT_EQ(read("old.png"), picture);
  EXPECT_EQ(permissions("old.png"), 0606u);
  EXPECT_EQ(names(), Names{"old.png"});
}

TEST_F(replaceFile, leaves_an_open_reader_with_the_whole_old_file) {
  write("old.png", "old");
  std::ifstream reader(path("old.png"));
  EXPECT_TRUE(posix::replaceFile(path("old.png"), picture));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(replaceFile, refuses_a_link_and_leaves_its_target_alone) {
  write("old.png", "old");
  fs::create_symlink(path("old.png"), path("link"));
  EXPECT_FALSE(posix::replaceFile(path("link"), picture));
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(read("old.png"), "old");
  EXPECT_EQ(names(), (Names{"link", "old.png"}));
}

TEST_F(replaceFile, refuses_a_link_to_nothing) {
  fs::create_symlink(path("nowhere"), path("link"));
  EXPECT_FALSE(posix::replaceFile(path("link"), picture));
  EXPECT_EQ(names(), Names{"link"});
}

TEST_F(replaceFile, refuses_a_directory_a_fifo_and_a_device) {
  fs::create_directory(path("directory"));
  ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
  EXPECT_FALSE(posix::replaceFile(path("directory"), picture));
  EXPECT_FALSE(posix::replaceFile(path("fifo"), picture));
  EXPECT_FALSE(posix::replaceFile("/dev/null", picture));
  EXPECT_TRUE(fs::is_fifo(path("fifo")));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(names(), (Names{"directory", "fifo"}));
}

TEST_F(replaceFile, fails_for_a_path_that_can_hold_no_file) {
  write("file", "old");
  EXPECT_FALSE(posix::replaceFile("", picture));
  EXPECT_FALSE(posix::replaceFile(path("missing/new.png"), picture));
  EXPECT_FALSE(posix::replaceFile(path("missing/"), picture));
  EXPECT_FALSE(posix::replaceFile(path("file/new.png"), picture));
  EXPECT_FALSE(posix::replaceFile(path("file") + std::string("\0.png", 5), picture));
  EXPECT_EQ(read("file"), "old");
  EXPECT_EQ(names(), Names{"file"});
}

TEST_F(replaceFile, takes_the_longest_name_a_folder_can_hold) {
  const std::string name(255, 'n');
  EXPECT_TRUE(posix::replaceFile(path(name), picture));
  EXPECT_EQ(names(), Names{name});
}

TEST_F(replaceFile, takes_a_name_in_the_current_directory) {
  const fs::path before = fs::current_path();
  fs::current_path(path(""));
  EXPECT_TRUE(posix::replaceFile("here.png", picture));
  fs::current_path(before);
  EXPECT_EQ(names(), Names{"here.png"});
}

TEST_F(listDirectory, gives_hidden_names_and_neither_itself_nor_its_parent) {
  write(".hidden", "");
  write("a", "");
  fs::create_directory(path("b"));
  EXPECT_EQ(names(), (Names{".hidden", "a", "b"}));
}

TEST_F(listDirectory, fails_for_what_is_no_directory) {
  write("a", "");
  EXPECT_EQ(posix::listDirectory(path("a")), std::nullopt);
  EXPECT_EQ(posix::listDirectory(path("missing")), std::nullopt);
}

TEST_F(fileExists, follows_links) {
  write("a", "");
  fs::create_symlink(path("a"), path("link"));
  fs::create_symlink(path("nowhere"), path("broken"));
  EXPECT_TRUE(posix::fileExists(path("a")));
  EXPECT_TRUE(posix::fileExists(path("link")));
  EXPECT_TRUE(posix::fileExists(path("")));
  EXPECT_FALSE(posix::fileExists(path("broken")));
  EXPECT_FALSE(posix::fileExists(path("missing")));
}

TEST_F(replaceFile, beyond_the_size_limit_is_refused_and_leaves_nothing) {
  write("out", "old");
  rlimit before = {};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small = {8, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);

  const bool replaced = posix::replaceFile(path("out"), "longer than eight bytes");

  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_FALSE(replaced);
  EXPECT_EQ(read("out"), "old");
  EXPECT_EQ(names(), Names{"out"});
}

TEST_F(resolvedPath, follows_links_as_far_as_there_is_something) {
  const std::string folder = fs::canonical(path("")).string();
  fs::create_directory(path("a"));
  write("a/file", "");
  fs::create_symlink("a", path("link"));
  EXPECT_EQ(posix::resolvedPath(path("link/file")), folder + "/a/file");
  EXPECT_EQ(posix::resolvedPath(path("link/missing/more")), folder + "/a/missing/more");
  EXPECT_EQ(posix::resolvedPath("missing"), fs::current_path().string() + "/missing");
  EXPECT_EQ(posix::resolvedPath(""), "");
}

TEST_F(resolvedPath, leaves_a_circle_of_links_as_it_is) {
  fs::create_symlink("circle", path("circle"));
  EXPECT_EQ(posix::resolvedPath(path("circle")), path("circle"));
}

TEST_F(readFile, gives_the_bytes_of_a_regular_file_links_followed) {
  write("a", picture);
  fs::create_symlink("a", path("link"));
  EXPECT_EQ(posix::readFile(path("a")), picture);
  EXPECT_EQ(posix::readFile(path("link")), picture);
}

TEST_F(readFile, gives_nothing_for_what_is_no_regular_file) {
  ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
  EXPECT_EQ(posix::readFile(path("fifo")), std::nullopt);
  EXPECT_EQ(posix::readFile(path("")), std::nullopt);
  EXPECT_EQ(posix::readFile(path("missing")), std::nullopt);
  EXPECT_EQ(posix::readFile("/dev/null"), std::nullopt);
}

TEST_F(lockFile, creates_a_file_for_its_owner_alone) {
  umask(0);
  const int lock = posix::lockFile(path("lock"));
  EXPECT_GE(lock, 0);
  EXPECT_EQ(permissions("lock"), 0600u);
  EXPECT_EQ(fcntl(lock, F_GETFD), FD_CLOEXEC);
  close(lock);
}

TEST_F(lockFile, takes_no_standard_descriptors_place) {
  const int kept = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  const int lock = posix::lockFile(path("lock"));
  const bool stillClosed = fcntl(STDIN_FILENO, F_GETFD) < 0;
  dup2(kept, STDIN_FILENO);
  close(kept);

  EXPECT_GT(lock, STDERR_FILENO);
  EXPECT_TRUE(stillClosed);
  close(lock);
}

TEST_F(lockFile, leaves_what_is_in_the_file) {
  write("lock", "contents");
  const int lock = posix::lockFile(path("lock"));
  EXPECT_GE(lock, 0);
  EXPECT_EQ(read("lock"), "contents");
  close(lock);
}

TEST_F(lockFile, is_refused_while_another_holds_the_lock) {
  write("lock", "");
  const int other = open(path("lock").c_str(), O_RDONLY);
  ASSERT_EQ(flock(other, LOCK_SH), 0);
  EXPECT_EQ(posix::lockFile(path("lock")), -1);
  close(other);
  const int lock = posix::lockFile(path("lock"));
  EXPECT_GE(lock, 0);
  EXPECT_EQ(posix::lockFile(path("lock")), -1);
  close(lock);
}

TEST_F(lockFile, is_refused_for_what_cannot_be_opened) {
  EXPECT_EQ(posix::lockFile(path("missing/lock")), -1);
  EXPECT_EQ(posix::lockFile(path("")), -1);
}

}  // namespace
