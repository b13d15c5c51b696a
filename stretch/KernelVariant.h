// The three dimensions that name one kernel: pixel depth, intensity origin and channel variant.
#pragma once

#include <cstdint>

namespace morvane {

// Channel width: unsigned 8-bit (white 255), unsigned 16-bit (white 32768), 32-bit float.
enum class PixelDepth : int32_t { Depth8 = 0, Depth16 = 1, Depth32f = 2 };

// Where the intensity that drives the stretch is read: the image itself or the
// "Intensity Source" layer.
enum class IntensityOrigin : int32_t { SelfIntensity = 0, LayerIntensity = 1 };

// Which intensity a kernel measures and which channels it writes.
enum class ChannelVariant : int32_t {
  Luma = 0,         // luma intensity; writes alpha, red, green, blue
  Red = 1,          // red intensity; writes red
  Green = 2,        // green intensity; writes green
  Blue = 3,         // blue intensity; writes blue
  Alpha = 4,        // alpha intensity (not alpha-weighted); writes alpha
  LumaNoAlpha = 5,  // luma intensity; writes red, green, blue
};

}  // namespace morvane
