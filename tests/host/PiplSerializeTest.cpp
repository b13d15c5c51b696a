// Padding and length rules of the property-list serialiser at the boundaries
// the effect's own strings do not reach.
#include <gtest/gtest.h>

#include <ostream>

#include <cstdint>
#include <vector>

#include "host/PiplDescription.h"

namespace {

using morvane::pipl::CString;
using morvane::pipl::PascalString;
using morvane::pipl::Property;
using morvane::pipl::PropertyList;
using morvane::pipl::Serialize;
using morvane::pipl::Short;
using morvane::pipl::Value;
using Bytes = std::vector<uint8_t>;

struct ValueCase {
  friend void PrintTo(const ValueCase& c, std::ostream* os) { *os << c.label; }
  const char* label;
  Value value;
  uint32_t length;  // as stored in the property
  Bytes padded;     // value bytes after the length field
};

class PiplValue : public testing::TestWithParam<ValueCase> {};

TEST_P(PiplValue, StoresLengthAndPaddedValue) {
  const ValueCase& c = GetParam();
  const Bytes bytes = Serialize(PropertyList{"8BIM", {Property{"abcd", c.value}}});
  ASSERT_EQ(bytes.size(), 10 + 16 + c.padded.size());
  const Bytes header(bytes.begin() + 10, bytes.begin() + 26);
  EXPECT_EQ(header, (Bytes{'M', 'I', 'B', '8', 'd', 'c', 'b', 'a', 0, 0, 0, 0,
                           static_cast<uint8_t>(c.length), 0, 0, 0}));
  EXPECT_EQ(Bytes(bytes.begin() + 26, bytes.end()), c.padded);
}

INSTANTIATE_TEST_SUITE_P(
    Boundaries, PiplValue,
    testing::Values(
        ValueCase{"PascalFillsWord", PascalString{"abc"}, 4, {3, 'a', 'b', 'c'}},
        ValueCase{
            "PascalSpillsIntoNextWord", PascalString{"abcd"}, 8, {4, 'a', 'b', 'c', 'd', 0, 0, 0}},
        ValueCase{"EmptyPascal", PascalString{""}, 4, {0, 0, 0, 0}},
        ValueCase{"CStringFillsWord", CString{"abc"}, 4, {'a', 'b', 'c', 0}},
        ValueCase{"CStringSpills", CString{"abcd"}, 8, {'a', 'b', 'c', 'd', 0, 0, 0, 0}},
        ValueCase{"ShortReportsTwo", Short{0x1234}, 2, {0x34, 0x12, 0, 0}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(PiplSerialize, RefusesAPascalStringLongerThanItsLengthByte) {
  const PropertyList list{"8BIM", {Property{"name", PascalString{std::string(256, 'x')}}}};
  EXPECT_THROW(Serialize(list), std::length_error);
}

}  // namespace
