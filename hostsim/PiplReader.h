// Reads a plug-in property list as a host does before loading the module.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace hostsim {

// A property list the host would refuse; what() says why.
class PiplError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A four-character code as a 32-bit number, first character in the high byte
// ('kind' == 0x6B696E64).
constexpr uint32_t FourCc(const char (&s)[5]) {
  return static_cast<uint32_t>(static_cast<uint8_t>(s[0])) << 24 |
         static_cast<uint32_t>(static_cast<uint8_t>(s[1])) << 16 |
         static_cast<uint32_t>(static_cast<uint8_t>(s[2])) << 8 |
         static_cast<uint32_t>(static_cast<uint8_t>(s[3]));
}
std::string FourCcText(uint32_t code);

struct PiplProperty {
  uint32_t vendor;
  uint32_t key;
  uint32_t id;
  uint32_t length;             // as stored
  std::vector<uint8_t> value;  // `length` bytes, without the padding
};

// What the host takes from the list.
struct PiplInfo {
  uint32_t kind = 0;
  std::string name;
  std::string category;
  std::string matchName;
  std::string entryPoint;                               // the Windows x64 entry point ('8664')
  uint16_t listVersionMajor = 0, listVersionMinor = 0;  // 'ePVR'
  uint16_t specVersionMajor = 0, specVersionMinor = 0;  // 'eSVR'
  uint32_t effectVersion = 0;                           // 'eVER'
  uint32_t outFlags = 0;                                // 'eGLO'
  uint32_t outFlags2 = 0;                               // 'eGL2'
  std::vector<PiplProperty> properties;                 // every property, in order
};

// Throws PiplError for a malformed list or a missing or ill-formed property.
PiplInfo ParsePipl(std::span<const uint8_t> bytes);
PiplInfo ReadPiplFile(const std::filesystem::path& path);

}  // namespace hostsim
