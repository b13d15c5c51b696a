// Opening a dynamic library and finding its exported functions: dlopen and
// dlsym on POSIX systems, LoadLibrary and GetProcAddress on Windows, the way a
// host on each system loads an effect module.
#pragma once

#include <filesystem>
#include <string>

namespace hostsim {

// Loads the library at `path` with every symbol resolved now; null on failure,
// with the system's reason in `error`.
void* OpenLibrary(const std::filesystem::path& path, std::string& error);
// The address of the exported function `name`; null when there is none, with
// the system's reason (if any) in `error`.
void* LibrarySymbol(void* library, const std::string& name, std::string& error);
void CloseLibrary(void* library);

}  // namespace hostsim
