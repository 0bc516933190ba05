# Plays the formula of packaging/homebrew as Homebrew does, with stand-ins of what Homebrew brings:
#   ruby formula_standin.rb FORMULA DRIVER
# Prints a line for each declaration and each command of the installation, then runs the formula's test with DRIVER in
# the place of the installed program.
require "pathname"
require "tmpdir"

class Formula
  class << self
    attr_reader :test_of_it

    %w[desc homepage url sha256 version depends_on].each do |name|
      define_method(name) { |value| puts "#{name} #{value}" }
    end

    def test(&block) = @test_of_it = block
  end

  attr_accessor :bin

  def opt_share = Pathname("/opt/homebrew/opt/driver/share")
  def std_cmake_args = ["-DCMAKE_INSTALL_PREFIX=/prefix"]
  def system(*words) = puts("system #{words.join(" ")}")

  def shell_output(command, status = 0)
    output = `#{command}`
    raise "status #{$?.exitstatus} of #{command}" unless $?.exitstatus == status

    output
  end

  def assert_equal(wanted, found)
    raise "wanted #{wanted.inspect}, found #{found.inspect}" unless wanted == found
  end
end

load ARGV[0]
formula = Driver.new
formula.install
puts formula.caveats
Dir.mktmpdir do |folder|
  File.symlink(File.expand_path(ARGV[1]), File.join(folder, "driver"))
  formula.bin = Pathname(folder)
  formula.instance_exec(&Driver.test_of_it)
end
puts "tested"
