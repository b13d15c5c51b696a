// The pixel formats the effect and the simulated host exchange. Both take them from the host
// interface, so only their spelling here can show a wrong value: four characters, the first in
// the low byte. (The record layouts are checked at compile time in sdk/HostInterfaceLayout.h.)
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "sdk/HostInterface.h"

namespace {

uint32_t FourCc(const std::string& s) {
  return static_cast<uint32_t>(s[0] | s[1] << 8 | s[2] << 16 | s[3] << 24);
}

TEST(PixelFormats, AreTheirFourCharacters) {
  const std::pair<int64_t, const char*> formats[] = {
      {PF_PixelFormat_ARGB32, "argb"},       {PF_PixelFormat_ARGB64, "ae16"},
      {PF_PixelFormat_ARGB128, "ae32"},      {PF_PixelFormat_BGRA32, "bgra"},
      {PF_PixelFormat_INVALID, "badf"},      {PrPixelFormat_ARGB_4444_8u, "argb"},
      {PrPixelFormat_ARGB_4444_16u, "Argb"}, {PrPixelFormat_ARGB_4444_32f, "ARgb"},
      {PrPixelFormat_BGRA_4444_8u, "bgra"},  {PrPixelFormat_Invalid, "badf"}};
  for (const auto& [value, characters] : formats)
    EXPECT_EQ(value, FourCc(characters)) << characters;
}

}  // namespace
