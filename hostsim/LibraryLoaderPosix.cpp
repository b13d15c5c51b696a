#include <dlfcn.h>

#include "hostsim/LibraryLoader.h"

namespace hostsim {

namespace {

std::string LastError() {
  const char* why = dlerror();
  return why != nullptr ? why : "";
}

}  // namespace

void* OpenLibrary(const std::filesystem::path& path, std::string& error) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) error = LastError();
  return library;
}

void* LibrarySymbol(void* library, const std::string& name, std::string& error) {
  dlerror();
  void* symbol = dlsym(library, name.c_str());
  if (symbol == nullptr) error = LastError();
  return symbol;
}

void CloseLibrary(void* library) {
  dlclose(library);
}

}  // namespace hostsim
