// What the sanitizers are to pass over, in programs that are built with them.

/// The font library keeps its tables until the process ends, beyond the reach of whoever drew last.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

/// That something was passed over is no news, and would stand among what a program prints.
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }

/// Text layout lets a thread of its own read the fonts. How the two wait for one another is not
/// seen in libraries that are not built with the sanitizer. And a guard that dies of a signal locks
/// in its handler: on a simulated Mac that is a message, which takes memory; it may fail, and the
/// process has two seconds for it.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libfontconfig.so\n"
         "called_from_lib:libpangoft2-1.0.so\n"
         "called_from_lib:libglib-2.0.so\n"
         "signal:meetFatalSignal\n";
}
