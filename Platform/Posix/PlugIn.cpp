#include "Platform/Posix/PlugIn.hpp"

#include <dlfcn.h>

namespace ostrel {

namespace {

std::unexpected<std::string> failure(const std::string& path, const std::string& reason) {
  return std::unexpected("the plug-in " + path + " cannot be loaded: " + reason);
}

std::string loaderError() {
  const char* error = ::dlerror();
  return error == nullptr ? "for no reason that the system tells" : error;
}

}  // namespace

std::expected<const void*, std::string> loadPlugIn(const std::string& path, const char* symbol,
                                                   std::string_view build) {
  // dlopen() would look up a name without a slash in the library search path.
  if (!path.starts_with('/')) return failure(path, "its path is not absolute");
  if (const auto fault = faultOfLibraryFile(path)) return failure(path, *fault);
  // Never unloaded, since toolkits leave threads and exit handlers behind. Lazy binding: most functions of
  // its libraries are never called. The plug-in itself is linked so that missing symbols fail the load.
  void* const plugIn = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (plugIn == nullptr) return failure(path, loaderError());
  const void* const table = ::dlsym(plugIn, symbol);
  if (table == nullptr) return failure(path, loaderError());
  const char* const itsBuild = *static_cast<const char* const*>(table);
  if (itsBuild == nullptr || build != itsBuild) return failure(path, "it belongs to another build");
  return table;
}

}  // namespace ostrel
