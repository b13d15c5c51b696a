#include "host/PiplDescription.h"

#include <cstdio>
#include <stdexcept>

#include "host/EffectIdentity.h"

namespace morvane::pipl {

PropertyList EffectPropertyList() {
  return PropertyList{"8BIM",
                      {
                          {"kind", CodeValue{"eFKT"}},
                          {"name", PascalString{kEffectName}},
                          {"catg", PascalString{kEffectCategory}},
                          {"8664", CString{kEntryPointName}},
                          {"ePVR", ShortPair{2, 0}},
                          {"eSVR", ShortPair{static_cast<uint16_t>(kInterfaceVersion),
                                             static_cast<uint16_t>(kInterfaceSubversion)}},
                          {"eVER", Long{kEffectVersionWord}},
                          {"eINF", Short{0}},
                          {"eGLO", Long{kGlobalOutFlags}},
                          {"eGL2", Long{kGlobalOutFlags2}},
                          {"eMNA", PascalString{kEffectMatchName}},
                          {"aeFL", Long{0}},
                      }};
}

namespace {

class ByteWriter {
 public:
  void U16(uint16_t v) {
    bytes_.push_back(static_cast<uint8_t>(v & 0xFF));
    bytes_.push_back(static_cast<uint8_t>(v >> 8));
  }
  void U32(uint32_t v) {
    for (int shift = 0; shift < 32; shift += 8)
      bytes_.push_back(static_cast<uint8_t>(v >> shift));
  }
  // A four-character code is a 32-bit number with the first character in the
  // high byte; stored little-endian it reads reversed.
  void Code(const FourCc& c) {
    for (int i = 3; i >= 0; --i)
      bytes_.push_back(static_cast<uint8_t>(c.chars[i]));
  }
  void Raw(const std::vector<uint8_t>& data) {
    bytes_.insert(bytes_.end(), data.begin(), data.end());
  }

  std::vector<uint8_t> Take() { return std::move(bytes_); }

 private:
  std::vector<uint8_t> bytes_;
};

size_t PaddedSize(size_t n) {
  return (n + 3) / 4 * 4;
}

// The value bytes before padding, and the length the property reports.
struct Encoded {
  std::vector<uint8_t> data;
  uint32_t reportedLength;
};

std::vector<uint8_t> PadTo4(std::vector<uint8_t> data) {
  data.resize(PaddedSize(data.size()), 0);
  return data;
}

Encoded Encode(const Value& value) {
  struct Visitor {
    Encoded operator()(const CodeValue& v) const {
      ByteWriter w;
      w.Code(v.code);
      return {w.Take(), 4};
    }
    Encoded operator()(const PascalString& v) const {
      if (v.text.size() > 255) throw std::length_error("Pascal string longer than 255 bytes");
      std::vector<uint8_t> data{static_cast<uint8_t>(v.text.size())};
      data.insert(data.end(), v.text.begin(), v.text.end());
      data = PadTo4(std::move(data));
      return {data, static_cast<uint32_t>(data.size())};
    }
    Encoded operator()(const CString& v) const {
      std::vector<uint8_t> data(v.text.begin(), v.text.end());
      data.push_back(0);
      data = PadTo4(std::move(data));
      return {data, static_cast<uint32_t>(data.size())};
    }
    Encoded operator()(const ShortPair& v) const {
      ByteWriter w;
      w.U16(v.first);
      w.U16(v.second);
      return {w.Take(), 4};
    }
    Encoded operator()(const Long& v) const {
      ByteWriter w;
      w.U32(v.value);
      return {w.Take(), 4};
    }
    Encoded operator()(const Short& v) const {
      ByteWriter w;
      w.U16(v.value);
      return {PadTo4(w.Take()), 2};
    }
  };
  return std::visit(Visitor{}, value);
}

}  // namespace

std::vector<uint8_t> Serialize(const PropertyList& list) {
  ByteWriter w;
  w.U16(1);  // reserved
  w.U32(0);  // list version
  w.U32(static_cast<uint32_t>(list.properties.size()));
  for (const Property& p : list.properties) {
    const Encoded encoded = Encode(p.value);
    w.Code(list.vendor);
    w.Code(p.key);
    w.U32(0);  // property id
    w.U32(encoded.reportedLength);
    w.Raw(PadTo4(encoded.data));
  }
  return w.Take();
}

std::string ResourceScript(const std::vector<uint8_t>& bytes) {
  if (bytes.size() % 2 != 0) throw std::invalid_argument("property list of odd length");
  std::string out =
      "// Generated at build time from the effect's property-list description; do not edit.\n"
      "// The plug-in property list as raw data: 16-bit little-endian words.\n\n";
  char line[64];
  std::snprintf(line, sizeof line, "LANGUAGE %d, %d\n\n", kResourceLanguage & 0x3FF,
                kResourceLanguage >> 10);
  out += line;
  std::snprintf(line, sizeof line, "%d PIPL\nBEGIN\n", kResourceId);
  out += line;
  const size_t words = bytes.size() / 2;
  for (size_t i = 0; i < words; ++i) {
    const unsigned word = bytes[2 * i] | (bytes[2 * i + 1] << 8);
    std::snprintf(line, sizeof line, "%s0x%04X%s", i % 8 == 0 ? "  " : "", word,
                  i + 1 == words ? "\n" : (i % 8 == 7 ? ",\n" : ", "));
    out += line;
  }
  out += "END\n";
  return out;
}

}  // namespace morvane::pipl
