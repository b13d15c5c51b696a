#include "hostsim/PiplReader.h"

#include <fstream>
#include <iterator>
#include <map>

namespace hostsim {

std::string FourCcText(uint32_t code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char c = static_cast<char>(code >> shift & 0xFF);
    text += (c >= 0x20 && c < 0x7F) ? c : '?';
  }
  return text;
}

namespace {

constexpr uint32_t kVendor = FourCc("8BIM");
constexpr uint32_t kEffectKind = FourCc("eFKT");

class Cursor {
 public:
  explicit Cursor(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  size_t Offset() const { return offset_; }
  size_t Remaining() const { return bytes_.size() - offset_; }

  uint16_t U16(const char* what) {
    Need(2, what);
    const uint16_t v = static_cast<uint16_t>(bytes_[offset_] | bytes_[offset_ + 1] << 8);
    offset_ += 2;
    return v;
  }
  uint32_t U32(const char* what) {
    Need(4, what);
    uint32_t v = 0;
    for (int i = 3; i >= 0; --i)
      v = v << 8 | bytes_[offset_ + static_cast<size_t>(i)];
    offset_ += 4;
    return v;
  }
  std::vector<uint8_t> Bytes(size_t n, const char* what) {
    Need(n, what);
    std::vector<uint8_t> out(bytes_.begin() + static_cast<std::ptrdiff_t>(offset_),
                             bytes_.begin() + static_cast<std::ptrdiff_t>(offset_ + n));
    offset_ += n;
    return out;
  }

 private:
  void Need(size_t n, const char* what) const {
    if (Remaining() < n) {
      throw PiplError("property list ends inside " + std::string(what) + " at byte " +
                      std::to_string(offset_));
    }
  }

  std::span<const uint8_t> bytes_;
  size_t offset_ = 0;
};

std::string Where(const PiplProperty& p) {
  return "property '" + FourCcText(p.key) + "'";
}

void ExpectLength(const PiplProperty& p, uint32_t length) {
  if (p.length != length) {
    throw PiplError(Where(p) + " has length " + std::to_string(p.length) + ", expected " +
                    std::to_string(length));
  }
}

std::string PascalString(const PiplProperty& p) {
  if (p.value.empty()) throw PiplError(Where(p) + " is an empty Pascal string");
  const size_t n = p.value[0];
  if (n + 1 > p.value.size()) {
    throw PiplError(Where(p) + ": Pascal string of " + std::to_string(n) +
                    " characters does not fit its " + std::to_string(p.value.size()) +
                    "-byte value");
  }
  if (p.value.size() % 4 != 0) {
    throw PiplError(Where(p) + ": string length " + std::to_string(p.value.size()) +
                    " is not the padded size");
  }
  return std::string(p.value.begin() + 1, p.value.begin() + 1 + static_cast<std::ptrdiff_t>(n));
}

std::string CString(const PiplProperty& p) {
  for (size_t i = 0; i < p.value.size(); ++i) {
    if (p.value[i] == 0) {
      if (p.value.size() % 4 != 0) {
        throw PiplError(Where(p) + ": string length " + std::to_string(p.value.size()) +
                        " is not the padded size");
      }
      return std::string(p.value.begin(), p.value.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
  throw PiplError(Where(p) + " is not a zero-terminated string");
}

uint32_t Long(const PiplProperty& p) {
  ExpectLength(p, 4);
  return static_cast<uint32_t>(p.value[0] | p.value[1] << 8 | p.value[2] << 16) |
         static_cast<uint32_t>(p.value[3]) << 24;
}

std::pair<uint16_t, uint16_t> ShortPair(const PiplProperty& p) {
  ExpectLength(p, 4);
  return {static_cast<uint16_t>(p.value[0] | p.value[1] << 8),
          static_cast<uint16_t>(p.value[2] | p.value[3] << 8)};
}

}  // namespace

PiplInfo ParsePipl(std::span<const uint8_t> bytes) {
  Cursor in(bytes);
  const uint16_t reserved = in.U16("the header");
  if (reserved != 1) {
    throw PiplError("property list header word is " + std::to_string(reserved) + ", expected 1");
  }
  const uint32_t version = in.U32("the header");
  if (version != 0) {
    throw PiplError("property list version is " + std::to_string(version) + ", expected 0");
  }
  const uint32_t count = in.U32("the header");

  PiplInfo info;
  std::map<uint32_t, const PiplProperty*> byKey;
  for (uint32_t i = 0; i < count; ++i) {
    PiplProperty p;
    p.vendor = in.U32("a property header");
    p.key = in.U32("a property header");
    p.id = in.U32("a property header");
    p.length = in.U32("a property header");
    if (p.vendor != kVendor) {
      throw PiplError("property " + std::to_string(i) + " has vendor '" + FourCcText(p.vendor) +
                      "', expected '8BIM'");
    }
    p.value = in.Bytes(p.length, "a property value");
    in.Bytes((4 - p.length % 4) % 4, "a property's padding");
    info.properties.push_back(std::move(p));
  }
  if (in.Remaining() != 0) {
    throw PiplError(std::to_string(in.Remaining()) + " bytes follow the last of " +
                    std::to_string(count) + " properties");
  }
  for (const PiplProperty& p : info.properties) {
    if (!byKey.emplace(p.key, &p).second) {
      throw PiplError("property '" + FourCcText(p.key) + "' appears twice");
    }
  }
  auto required = [&](const char(&key)[5]) -> const PiplProperty& {
    const auto it = byKey.find(FourCc(key));
    if (it == byKey.end()) throw PiplError("property list has no '" + std::string(key) + "'");
    return *it->second;
  };

  const PiplProperty& kind = required("kind");
  info.kind = Long(kind);
  if (info.kind != kEffectKind) {
    throw PiplError("plug-in kind is '" + FourCcText(info.kind) + "', not an effect ('eFKT')");
  }
  info.name = PascalString(required("name"));
  info.category = PascalString(required("catg"));
  info.entryPoint = CString(required("8664"));
  if (info.entryPoint.empty()) throw PiplError("property '8664' names no entry point");
  std::tie(info.listVersionMajor, info.listVersionMinor) = ShortPair(required("ePVR"));
  std::tie(info.specVersionMajor, info.specVersionMinor) = ShortPair(required("eSVR"));
  info.effectVersion = Long(required("eVER"));
  info.outFlags = Long(required("eGLO"));
  info.outFlags2 = Long(required("eGL2"));
  info.matchName = PascalString(required("eMNA"));
  if (const auto it = byKey.find(FourCc("eINF")); it != byKey.end()) ExpectLength(*it->second, 2);
  return info;
}

PiplInfo ReadPiplFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw PiplError("cannot read property list " + path.string());
  const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                                   std::istreambuf_iterator<char>());
  try {
    return ParsePipl(bytes);
  } catch (const PiplError& e) {
    throw PiplError(path.string() + ": " + e.what());
  }
}

}  // namespace hostsim
