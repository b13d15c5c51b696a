// The plug-in property list ("PIPL" resource) described as data, and its
// serialisation into the little-endian byte layout the host reads on Windows.
// The build runs a small generator over this description; nothing here depends
// on the host interface, so the generator is an ordinary native program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace morvane::pipl {

// A four-character code written as the host writes it ('kind', '8BIM').
struct FourCc {
  char chars[4];

  constexpr FourCc(const char (&text)[5]) : chars{text[0], text[1], text[2], text[3]} {}
};

// Value types a property can carry.
struct CodeValue {
  FourCc code;
};
struct PascalString {
  std::string text;
};
struct CString {
  std::string text;
};
struct ShortPair {
  uint16_t first;
  uint16_t second;
};
struct Long {
  uint32_t value;
};
struct Short {
  uint16_t value;
};

using Value = std::variant<CodeValue, PascalString, CString, ShortPair, Long, Short>;

struct Property {
  FourCc key;
  Value value;
};

struct PropertyList {
  FourCc vendor;
  std::vector<Property> properties;
};

// Resource id, type name and language of the list in a Windows module.
inline constexpr int kResourceId = 16000;
inline constexpr int kResourceLanguage = 1033;

// The effect's property list.
PropertyList EffectPropertyList();

// Byte layout: header (16-bit 1, 32-bit version 0, 32-bit property count), then
// per property the vendor and key stored with their four bytes reversed, a
// 32-bit id 0, a 32-bit length and the value zero-padded to a multiple of four.
// Strings report their padded size; a 16-bit value reports 2.
std::vector<uint8_t> Serialize(const PropertyList& list);

// A Windows resource script that embeds `bytes` as resource kResourceId of type
// "PIPL", language 1033, as 16-bit little-endian words.
std::string ResourceScript(const std::vector<uint8_t>& bytes);

}  // namespace morvane::pipl
