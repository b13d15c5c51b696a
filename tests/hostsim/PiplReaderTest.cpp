// The host's reading of a property list and its loading of a module: each kind of damage is
// refused with a message that names it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "hostsim/Module.h"
#include "hostsim/PiplReader.h"

namespace {

using Bytes = std::vector<uint8_t>;
using testing::HasSubstr;

Bytes ModulePipl() {
  std::ifstream in(MORVANE_PIPL_PATH, std::ios::binary);
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// The message of what `load` threw, or "loaded".
template <typename F>
std::string Refusal(F&& load) {
  try {
    load();
  } catch (const std::exception& e) {
    return e.what();
  }
  return "loaded";
}

// The module's list (270 bytes: a 10-byte header, then 16-byte property headers and values)
// cut to `keep` bytes and with `put` written at `at`.
struct Damage {
  const char* label;
  size_t keep;
  size_t at;
  Bytes put;
  const char* expected;  // part of the message
  friend void PrintTo(const Damage& d, std::ostream* os) { *os << d.label; }
};

const Damage kDamage[] = {
    {"Empty", 0, 0, {}, "ends inside the header"},
    {"Truncated", 269, 0, {}, "ends inside a property value"},
    {"HeaderWord", 270, 0, {2}, "header word is 2"},
    {"ListVersion", 270, 2, {1}, "version is 1"},
    {"CountTooHigh", 270, 6, {13}, "ends inside a property header"},
    {"CountTooLow", 270, 6, {11}, "20 bytes follow the last of 11"},
    {"Vendor", 270, 10, {'X'}, "vendor '8BIX'"},
    {"NotAnEffect", 270, 26, {'X'}, "not an effect"},
    {"PascalLength", 270, 46, {8}, "8 characters does not fit"},
    {"EntryUnterminated", 270, 104, {'X', 'Y'}, "not a zero-terminated string"},
    {"MissingMatchName", 270, 230, {'B'}, "has no 'eMNA'"},
    {"DuplicateKey", 270, 58, {'e', 'm', 'a', 'n'}, "'name' appears twice"},
    {"InfoLength", 270, 178, {4}, "'eINF' has length 4"},
};

class DamagedPipl : public testing::TestWithParam<Damage> {};

TEST_P(DamagedPipl, IsRefusedWithAClearMessage) {
  const Damage& d = GetParam();
  Bytes bytes = ModulePipl();
  EXPECT_NO_THROW(hostsim::ParsePipl(bytes));
  bytes.resize(d.keep);
  std::copy(d.put.begin(), d.put.end(), bytes.begin() + static_cast<std::ptrdiff_t>(d.at));
  EXPECT_THAT(Refusal([&] { hostsim::ParsePipl(bytes); }), HasSubstr(d.expected));
}

INSTANTIATE_TEST_SUITE_P(Damage, DamagedPipl, testing::ValuesIn(kDamage),
                         [](const auto& info) { return std::string(info.param.label); });

// Loading: the list's file, the module next to it and the entry point the list names.
TEST(ModuleLoading, RefusesWhatIsMissingOrMisnamed) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "hostsim-loading";
  std::filesystem::create_directories(folder);
  auto write = [&](const char* name, const Bytes& bytes) {
    std::ofstream(folder / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return folder / name;
  };
  Bytes renamed = ModulePipl();
  renamed.at(103) = 'X';  // "EffectMaiX"
  const auto shortList = write("Short.pipl", Bytes(5, 1));
  const auto renamedList = write("Renamed.pipl", renamed);
  write("Absent.pipl", ModulePipl());
  EXPECT_THAT(Refusal([&] { hostsim::ReadPiplFile(shortList); }), HasSubstr(shortList.string()));
  EXPECT_THAT(Refusal([&] { hostsim::Module(folder / "Missing.so"); }), HasSubstr("Missing.pipl"));
  EXPECT_THAT(Refusal([&] { hostsim::Module(folder / "Absent.so"); }), HasSubstr("Absent.so"));
  EXPECT_THAT(Refusal([&] { hostsim::Module(MORVANE_MODULE_PATH, renamedList); }),
              HasSubstr("does not export EffectMaiX"));
  EXPECT_EQ(hostsim::PiplPathFor("/a/b/Morvane.so"), std::filesystem::path("/a/b/Morvane.pipl"));
  std::filesystem::remove_all(folder);
}

}  // namespace
