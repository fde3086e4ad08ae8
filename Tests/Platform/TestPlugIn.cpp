// A module with tables as a program's plug-ins have them, or without.

namespace {

struct Table {
  const char* build;
  int number;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const Table testPlugIn = {"this build", 42};
extern "C" __attribute__((visibility("default"))) const Table namelessPlugIn = {nullptr, 0};
