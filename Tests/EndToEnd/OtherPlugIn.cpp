// Both plug-ins as another build of the program has them.

extern "C" __attribute__((visibility("default")))
const char* const ostrelShellPlugIn[] = {"another build", nullptr};

extern "C" __attribute__((visibility("default")))
const char* const ostrelViewsPlugIn[] = {"another build", nullptr};
