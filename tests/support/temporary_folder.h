#pragma once

#include <string>
#include <vector>

namespace testing_support {

/// An empty folder of a test's own, which goes with it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  std::string path(const std::string& name) const { return path_ + "/" + name; }

  void write(const std::string& name, const std::string& contents) const;

  /// What is in a file; empty when there is none.
  std::string read(const std::string& name) const;

  /// The names of what is in the folder, sorted.
  std::vector<std::string> names() const;

 private:
  std::string path_;
};

/// A picture read back from a PNG file.
struct PictureFile {
  int width = 0;
  int height = 0;
  std::vector<std::string> pixels;  // "#RRGGBBAA", row by row

  const std::string& at(int x, int y) const;
};

/// Reads a PNG file; a test failure, and an empty picture, when it is none.
PictureFile readPicture(const std::string& path);

}  // namespace testing_support
