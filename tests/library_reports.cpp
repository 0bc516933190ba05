// What the sanitizers are to pass over, in programs that draw: reports of libraries that are not
// built with them.

/// The font library keeps its tables until the process ends, beyond the reach of whoever drew last.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

/// Text layout lets a thread of its own read the fonts. How the two wait for one another is not
/// seen in libraries as they are installed.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libfontconfig.so\n"
         "called_from_lib:libpangoft2-1.0.so\n"
         "called_from_lib:libglib-2.0.so\n";
}
