#include <windows.h>

#include "hostsim/LibraryLoader.h"

namespace hostsim {

namespace {

std::string LastError() {
  const DWORD code = GetLastError();
  char text[512] = {};
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, code, 0, text, sizeof text, nullptr);
  std::string message(text, length);
  while (!message.empty() && (message.back() == '\n' || message.back() == '\r')) {
    message.pop_back();
  }
  return "error " + std::to_string(code) + (message.empty() ? "" : " (" + message + ")");
}

}  // namespace

void* OpenLibrary(const std::filesystem::path& path, std::string& error) {
  // The module's own folder is searched for anything it depends on, as a host
  // does for plug-ins outside its installation.
  const std::filesystem::path full = std::filesystem::absolute(path);
  HMODULE library = LoadLibraryExW(full.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library == nullptr) error = LastError();
  return reinterpret_cast<void*>(library);
}

void* LibrarySymbol(void* library, const std::string& name, std::string& error) {
  FARPROC symbol = GetProcAddress(static_cast<HMODULE>(library), name.c_str());
  if (symbol == nullptr) error = LastError();
  return reinterpret_cast<void*>(symbol);
}

void CloseLibrary(void* library) {
  FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace hostsim
