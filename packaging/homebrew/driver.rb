# Not tried yet on a Mac. docs/RELEASE.md says how address and checksum of a release are filled in.
class Driver < Formula
  desc "Operate applications in the background of a Mac, for agents"
  homepage "https://zentrove.example/desk"
  url "https://zentrove.example/desk/driver-0.9.0.tar.gz"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"
  version "0.9.0"

  depends_on "cmake" => :build
  depends_on arch: :arm64
  depends_on macos: :sonoma

  def install
    system "cmake", "-S", "platform/macos", "-B", "build", *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
  end

  def caveats
    <<~EOS
      driver needs two permissions, in System Settings > Privacy & Security: Accessibility, and
      Screen & System Audio Recording. Grant them to the program that starts driver. To see what
      is missing:
        #{opt_share}/driver/doctor
    EOS
  end

  test do
    line = "{\"error\":\"usage: driver <command> ...\",\"ok\":false}\n"
    assert_equal line, shell_output(bin/"driver", 1)
  end
end
