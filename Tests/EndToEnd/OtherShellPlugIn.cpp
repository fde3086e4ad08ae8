// A Shell plug-in as another build of the program has it.

extern "C" __attribute__((visibility("default")))
const char* const ostrelShellPlugIn[] = {"another build", nullptr};
