#include "hostsim/Module.h"

#include <dlfcn.h>

namespace hostsim {

namespace {

void* Symbol(void* library, const std::string& name, const std::filesystem::path& path) {
  dlerror();
  void* symbol = dlsym(library, name.c_str());
  if (symbol == nullptr) {
    const char* why = dlerror();
    throw ModuleError(path.string() + " does not export " + name +
                      (why != nullptr ? std::string(": ") + why : std::string()));
  }
  return symbol;
}

}  // namespace

std::filesystem::path PiplPathFor(const std::filesystem::path& module) {
  std::filesystem::path pipl = module;
  return pipl.replace_extension(".pipl");
}

Module::Module(const std::filesystem::path& modulePath)
    : Module(modulePath, PiplPathFor(modulePath)) {}

Module::Module(const std::filesystem::path& modulePath, const std::filesystem::path& piplPath)
    : path_(modulePath), pipl_(ReadPiplFile(piplPath)) {
  library_ = dlopen(modulePath.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) {
    const char* why = dlerror();
    throw ModuleError("cannot load " + modulePath.string() + ": " + (why != nullptr ? why : "?"));
  }
  try {
    registration_ = reinterpret_cast<PluginDataEntryFunctionPtr>(
        Symbol(library_, "PluginDataEntryFunction", path_));
    entry_ = reinterpret_cast<PF_FilterProc>(Symbol(library_, pipl_.entryPoint, path_));
  } catch (...) {
    dlclose(library_);
    throw;
  }
}

Module::~Module() {
  if (library_ != nullptr) dlclose(library_);
}

}  // namespace hostsim
