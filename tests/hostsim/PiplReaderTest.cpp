// The host's reading of a property list: the module's own list is accepted,
// and each kind of damage is refused with a message that names it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

#include "hostsim/Module.h"
#include "hostsim/PiplReader.h"

namespace {

using Bytes = std::vector<uint8_t>;

const Bytes& ModulePipl() {
  static const Bytes bytes = [] {
    std::ifstream in(MORVANE_PIPL_PATH, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  }();
  return bytes;
}

TEST(PiplReader, ReadsTheModulesList) {
  const hostsim::PiplInfo info = hostsim::ReadPiplFile(MORVANE_PIPL_PATH);
  EXPECT_EQ(info.kind, hostsim::FourCc("eFKT"));
  EXPECT_EQ(info.name, "Morvane");
  EXPECT_EQ(info.category, "Orbrenn");
  EXPECT_EQ(info.matchName, "morvane");
  EXPECT_EQ(info.entryPoint, "EffectMain");
  EXPECT_EQ(info.listVersionMajor, 2);
  EXPECT_EQ(info.listVersionMinor, 0);
  EXPECT_EQ(info.specVersionMajor, 13);
  EXPECT_EQ(info.specVersionMinor, 27);
  EXPECT_EQ(info.effectVersion, 0x000B0601u);
  EXPECT_EQ(info.outFlags, 0x06008000u);
  EXPECT_EQ(info.outFlags2, 0x08801410u);
  EXPECT_EQ(info.properties.size(), 12u);
}

// Offsets into the module's list (header 10 bytes, then 16-byte property headers).
constexpr size_t kCount = 6;
constexpr size_t kKindVendor = 10;
constexpr size_t kKindValue = 26;
constexpr size_t kNameValue = 46;
constexpr size_t kCatgKey = 58;
constexpr size_t kEntryValue = 94;
constexpr size_t kEinfLength = 178;
constexpr size_t kMatchNameKey = 230;

struct DamageCase {
  const char* label;
  void (*damage)(Bytes&);
  const char* expected;  // part of the message
  friend void PrintTo(const DamageCase& c, std::ostream* os) { *os << c.label; }
};

void Put(Bytes& b, size_t at, std::initializer_list<uint8_t> values) {
  for (uint8_t v : values)
    b.at(at++) = v;
}

const DamageCase kDamage[] = {
    {"Empty", [](Bytes& b) { b.clear(); }, "ends inside the header"},
    {"Truncated", [](Bytes& b) { b.pop_back(); }, "ends inside a property value"},
    {"HeaderWord", [](Bytes& b) { Put(b, 0, {2}); }, "header word is 2"},
    {"ListVersion", [](Bytes& b) { Put(b, 2, {1}); }, "version is 1"},
    {"CountTooHigh", [](Bytes& b) { Put(b, kCount, {13}); }, "ends inside a property header"},
    {"CountTooLow", [](Bytes& b) { Put(b, kCount, {11}); }, "20 bytes follow the last of 11"},
    {"Vendor", [](Bytes& b) { Put(b, kKindVendor, {'X'}); }, "vendor '8BIX'"},
    {"NotAnEffect", [](Bytes& b) { Put(b, kKindValue, {'X'}); }, "not an effect"},
    {"PascalLength", [](Bytes& b) { Put(b, kNameValue, {8}); }, "8 characters does not fit"},
    {"EntryUnterminated",
     [](Bytes& b) {
       Put(b, kEntryValue + 10, {'X', 'Y'});
     },
     "not a zero-terminated string"},
    {"MissingMatchName", [](Bytes& b) { Put(b, kMatchNameKey, {'B'}); }, "has no 'eMNA'"},
    {"DuplicateKey",
     [](Bytes& b) {
       Put(b, kCatgKey, {'e', 'm', 'a', 'n'});
     },
     "'name' appears twice"},
    {"InfoLength", [](Bytes& b) { Put(b, kEinfLength, {4}); }, "'eINF' has length 4"},
};

class DamagedPipl : public testing::TestWithParam<DamageCase> {};

TEST_P(DamagedPipl, IsRefusedWithAClearMessage) {
  Bytes bytes = ModulePipl();
  ASSERT_EQ(bytes.size(), 270u);
  GetParam().damage(bytes);
  try {
    hostsim::ParsePipl(bytes);
    FAIL() << "accepted";
  } catch (const hostsim::PiplError& e) {
    EXPECT_THAT(e.what(), testing::HasSubstr(GetParam().expected));
  }
}

INSTANTIATE_TEST_SUITE_P(Damage, DamagedPipl, testing::ValuesIn(kDamage),
                         [](const auto& info) { return std::string(info.param.label); });

// A scratch folder for lists written by a test.
class ScratchFolder : public testing::Test {
 protected:
  void SetUp() override {
    folder_ =
        std::filesystem::temp_directory_path() /
        ("hostsim-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::filesystem::path Write(const std::string& name, const Bytes& bytes) {
    const auto path = folder_ / name;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return path;
  }
  std::filesystem::path folder_;
};

TEST_F(ScratchFolder, AFileErrorNamesTheFile) {
  Bytes bytes = ModulePipl();
  bytes.resize(5);
  const auto path = Write("Short.pipl", bytes);
  try {
    hostsim::ReadPiplFile(path);
    FAIL() << "accepted";
  } catch (const hostsim::PiplError& e) {
    EXPECT_THAT(e.what(), testing::HasSubstr(path.string()));
  }
}

TEST_F(ScratchFolder, AModuleWithoutItsListIsNotLoaded) {
  EXPECT_THROW(hostsim::Module(folder_ / "Absent.so"), hostsim::PiplError);
}

TEST_F(ScratchFolder, AListWithoutItsModuleIsNotLoaded) {
  Write("Absent.pipl", ModulePipl());
  EXPECT_THROW(hostsim::Module(folder_ / "Absent.so"), hostsim::ModuleError);
}

TEST_F(ScratchFolder, TheEntryPointNamedByTheListMustExist) {
  Bytes bytes = ModulePipl();
  Put(bytes, kEntryValue + 9, {'X'});  // "EffectMaiX"
  const auto pipl = Write("Renamed.pipl", bytes);
  try {
    hostsim::Module module(MORVANE_MODULE_PATH, pipl);
    FAIL() << "loaded";
  } catch (const hostsim::ModuleError& e) {
    EXPECT_THAT(e.what(), testing::HasSubstr("does not export EffectMaiX"));
  }
}

TEST(ModulePaths, TheListLivesNextToTheModule) {
  EXPECT_EQ(hostsim::PiplPathFor("/a/b/Morvane.so"), std::filesystem::path("/a/b/Morvane.pipl"));
}

}  // namespace
