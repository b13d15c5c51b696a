// The generated property list, byte for byte against the layout the host
// expects, written out by hand property by property.
#include <gtest/gtest.h>

#include <ostream>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes ReadFile(const char* path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.good()) << path;
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

const Bytes& Generated() {
  static const Bytes bytes = ReadFile(MORVANE_PIPL_PATH);
  return bytes;
}

// Vendor "8BIM" stored reversed.
#define VENDOR 'M', 'I', 'B', '8'
#define ZERO32 0, 0, 0, 0

struct PropertyCase {
  friend void PrintTo(const PropertyCase& c, std::ostream* os) { *os << c.key; }
  const char* key;
  size_t offset;
  Bytes record;  // vendor, reversed key, id, length, padded value
};

const PropertyCase kProperties[] = {
    {"kind", 10, {VENDOR, 'd', 'n', 'i', 'k', ZERO32, 4, 0, 0, 0, 'T', 'K', 'F', 'e'}},
    {"name",
     30,
     {VENDOR, 'e', 'm', 'a', 'n', ZERO32, 8, 0, 0, 0, 7, 'M', 'o', 'r', 'v', 'a', 'n', 'e'}},
    {"catg",
     54,
     {VENDOR, 'g', 't', 'a', 'c', ZERO32, 8, 0, 0, 0, 7, 'O', 'r', 'b', 'r', 'e', 'n', 'n'}},
    {"8664", 78, {VENDOR, '4', '6', '6', '8', ZERO32, 12,  0,   0,   0, 'E',
                  'f',    'f', 'e', 'c', 't', 'M',    'a', 'i', 'n', 0, 0}},
    {"ePVR", 106, {VENDOR, 'R', 'V', 'P', 'e', ZERO32, 4, 0, 0, 0, 2, 0, 0, 0}},
    {"eSVR", 126, {VENDOR, 'R', 'V', 'S', 'e', ZERO32, 4, 0, 0, 0, 13, 0, 27, 0}},
    {"eVER", 146, {VENDOR, 'R', 'E', 'V', 'e', ZERO32, 4, 0, 0, 0, 0x01, 0x06, 0x0B, 0x00}},
    {"eINF", 166, {VENDOR, 'F', 'N', 'I', 'e', ZERO32, 2, 0, 0, 0, 0, 0, 0, 0}},
    {"eGLO", 186, {VENDOR, 'O', 'L', 'G', 'e', ZERO32, 4, 0, 0, 0, 0x00, 0x80, 0x00, 0x06}},
    {"eGL2", 206, {VENDOR, '2', 'L', 'G', 'e', ZERO32, 4, 0, 0, 0, 0x10, 0x14, 0x80, 0x08}},
    {"eMNA",
     226,
     {VENDOR, 'A', 'N', 'M', 'e', ZERO32, 8, 0, 0, 0, 7, 'm', 'o', 'r', 'v', 'a', 'n', 'e'}},
    {"aeFL", 250, {VENDOR, 'L', 'F', 'e', 'a', ZERO32, 4, 0, 0, 0, ZERO32}},
};
constexpr size_t kTotalSize = 270;

class PiplProperty : public testing::TestWithParam<PropertyCase> {};

TEST_P(PiplProperty, MatchesTheLayoutByteForByte) {
  const PropertyCase& c = GetParam();
  const Bytes& bytes = Generated();
  ASSERT_GE(bytes.size(), c.offset + c.record.size());
  const Bytes actual(bytes.begin() + static_cast<std::ptrdiff_t>(c.offset),
                     bytes.begin() + static_cast<std::ptrdiff_t>(c.offset + c.record.size()));
  EXPECT_EQ(actual, c.record) << "property " << c.key;
}

INSTANTIATE_TEST_SUITE_P(AllTwelve, PiplProperty, testing::ValuesIn(kProperties),
                         [](const auto& info) {
                           std::string name = info.param.key;
                           return name == "8664" ? std::string("EntryPoint8664") : name;
                         });

TEST(PiplHeader, IsReservedOneVersionZeroAndTwelveProperties) {
  const Bytes& bytes = Generated();
  ASSERT_GE(bytes.size(), 10u);
  EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 10), (Bytes{1, 0, 0, 0, 0, 0, 12, 0, 0, 0}));
}

TEST(PiplHeader, PropertiesFollowEachOtherWithNothingAfterTheLast) {
  // Each case's offset is where the previous record ended; the last one ends the file.
  size_t offset = 10;
  for (const PropertyCase& c : kProperties) {
    EXPECT_EQ(c.offset, offset) << c.key;
    offset += c.record.size();
  }
  EXPECT_EQ(offset, kTotalSize);
  EXPECT_EQ(Generated().size(), kTotalSize);
}

// The resource script embeds exactly the same bytes as 16-bit little-endian words.
TEST(PiplResourceScript, EmbedsTheBytesAsResource16000OfTypePiplInEnglishUs) {
  std::ifstream in(MORVANE_PIPL_RC_PATH);
  ASSERT_TRUE(in.good());
  const std::string script((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());

  EXPECT_NE(script.find("\nLANGUAGE 9, 1\n"), std::string::npos) << script;
  const std::string opening = "\n16000 PIPL\nBEGIN\n";
  const size_t begin = script.find(opening);
  ASSERT_NE(begin, std::string::npos) << script;
  const size_t end = script.find("\nEND\n", begin);
  ASSERT_NE(end, std::string::npos) << script;

  // Words are written "0xHHHH", separated by commas and line breaks.
  Bytes embedded;
  const std::string data = script.substr(begin + opening.size(), end - begin - opening.size());
  for (size_t at = data.find("0x"); at != std::string::npos; at = data.find("0x", at + 6)) {
    const unsigned value = std::stoul(data.substr(at + 2, 4), nullptr, 16);
    embedded.push_back(static_cast<uint8_t>(value & 0xFF));
    embedded.push_back(static_cast<uint8_t>(value >> 8));
  }
  EXPECT_EQ(embedded, Generated());
}

}  // namespace
