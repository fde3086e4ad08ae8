#include "Shells/Desktop/Shell/QtDesktop.hpp"

extern "C" __attribute__((visibility("default")))
const ostrel::ShellPlugIn ostrelShellPlugIn = {OSTREL_BUILD, ostrel::makeQtDesktop, ostrel::makeQtPictures};
