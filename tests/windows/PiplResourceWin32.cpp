#include <windows.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "tests/windows/PiplResource.h"

namespace morvane::wincheck {

namespace {

struct LibraryDeleter {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using ScopedLibrary = std::unique_ptr<std::remove_pointer_t<HMODULE>, LibraryDeleter>;

constexpr WORD kPiplId = 16000;
constexpr WORD kEnglishUs = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);  // 1033

}  // namespace

std::vector<uint8_t> ReadPiplResource(const std::filesystem::path& module) {
  const std::filesystem::path full = std::filesystem::absolute(module);
  // Mapped as an image resource only: nothing of the module runs.
  const ScopedLibrary library(LoadLibraryExW(
      full.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  if (!library) {
    throw std::runtime_error("cannot map " + module.string() + ": error " +
                             std::to_string(GetLastError()));
  }
  HRSRC resource = FindResourceExW(library.get(), L"PIPL", MAKEINTRESOURCEW(kPiplId), kEnglishUs);
  if (resource == nullptr) {
    throw std::runtime_error(module.string() + " has no PIPL resource 16000 in language 1033");
  }
  const DWORD size = SizeofResource(library.get(), resource);
  HGLOBAL loaded = LoadResource(library.get(), resource);
  const auto* bytes = static_cast<const uint8_t*>(LockResource(loaded));
  if (bytes == nullptr) throw std::runtime_error("cannot read the PIPL resource");
  return {bytes, bytes + size};
}

}  // namespace morvane::wincheck
