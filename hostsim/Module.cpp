#include "hostsim/Module.h"

#include "hostsim/LibraryLoader.h"

namespace hostsim {

namespace {

void* Symbol(void* library, const std::string& name, const std::filesystem::path& path) {
  std::string why;
  void* symbol = LibrarySymbol(library, name, why);
  if (symbol == nullptr) {
    throw ModuleError(path.string() + " does not export " + name +
                      (!why.empty() ? ": " + why : std::string()));
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
  std::string why;
  library_ = OpenLibrary(modulePath, why);
  if (library_ == nullptr) {
    throw ModuleError("cannot load " + modulePath.string() + ": " + (!why.empty() ? why : "?"));
  }
  try {
    registration_ = reinterpret_cast<PluginDataEntryFunctionPtr>(
        Symbol(library_, "PluginDataEntryFunction", path_));
    entry_ = reinterpret_cast<PF_FilterProc>(Symbol(library_, pipl_.entryPoint, path_));
  } catch (...) {
    CloseLibrary(library_);
    throw;
  }
}

Module::~Module() {
  if (library_ != nullptr) CloseLibrary(library_);
}

}  // namespace hostsim
