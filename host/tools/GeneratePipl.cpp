// Build-time tool: writes the effect's property list as raw bytes and as a
// Windows resource script.
//   morvane_pipl_generator <out.pipl> <out.rc>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

#include "host/PiplDescription.h"

namespace {

void WriteFile(const std::string& path, const char* data, size_t size) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(data, static_cast<std::streamsize>(size));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s <out.pipl> <out.rc>\n", argv[0]);
    return 2;
  }
  try {
    const auto bytes = morvane::pipl::Serialize(morvane::pipl::EffectPropertyList());
    WriteFile(argv[1], reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string script = morvane::pipl::ResourceScript(bytes);
    WriteFile(argv[2], script.data(), script.size());
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", argv[0], e.what());
    return 1;
  }
  return 0;
}
