// A loaded effect module: its property list, the library handle and the two
// entry points.
#pragma once

#include <filesystem>
#include <stdexcept>

#include "hostsim/PiplReader.h"
#include "sdk/HostInterface.h"

namespace hostsim {

class ModuleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The property list that belongs to `module`: same folder and name, ".pipl".
std::filesystem::path PiplPathFor(const std::filesystem::path& module);

class Module {
 public:
  // Reads and checks the property list first (PiplError), then loads the
  // library and resolves PluginDataEntryFunction and the entry point the list
  // names (ModuleError).
  explicit Module(const std::filesystem::path& modulePath);
  Module(const std::filesystem::path& modulePath, const std::filesystem::path& piplPath);
  ~Module();

  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  const PiplInfo& Pipl() const { return pipl_; }
  PluginDataEntryFunctionPtr RegistrationEntry() const { return registration_; }
  PF_FilterProc Entry() const { return entry_; }

 private:
  std::filesystem::path path_;
  PiplInfo pipl_;
  void* library_ = nullptr;
  PluginDataEntryFunctionPtr registration_ = nullptr;
  PF_FilterProc entry_ = nullptr;
};

}  // namespace hostsim
