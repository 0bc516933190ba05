/// What the leak checker is to pass over: the font library keeps its tables until the process ends,
/// beyond the reach of whoever drew last.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
