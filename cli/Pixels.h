// In-memory images of the command-line renderer.
//
// `Pixels<Channel>` is a tightly packed image with four channels per pixel. It
// holds either a file's values (red, green, blue, alpha in the file's units) or
// the effect's values (alpha, red, green, blue at a processing depth); the two
// wrappers below keep the meanings apart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace morvane::cli {

template <typename Channel>
struct Pixels {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<Channel> values;  // 4 * width * height, row after row

  Pixels() = default;
  Pixels(int32_t w, int32_t h) : width(w), height(h), values(std::size_t{4} * w * h) {}

  Channel* Row(int32_t y) { return values.data() + std::size_t{4} * width * y; }
  const Channel* Row(int32_t y) const { return values.data() + std::size_t{4} * width * y; }
  bool operator==(const Pixels&) const = default;
};

using AnyPixels = std::variant<Pixels<uint8_t>, Pixels<uint16_t>, Pixels<float>>;

// The effect's processing depth; the variant index of an `ArgbImage` follows it.
enum class Depth { Depth8 = 0, Depth16 = 1, Depth32f = 2 };

template <typename Channel>
constexpr Depth DepthOf() {
  if constexpr (std::is_same_v<Channel, uint8_t>)
    return Depth::Depth8;
  else if constexpr (std::is_same_v<Channel, uint16_t>)
    return Depth::Depth16;
  else
    return Depth::Depth32f;
}

std::string_view DepthName(Depth depth);  // "8", "16", "32f"

// Pixels as the effect sees them: A, R, G, B; 16-bit white is 32768.
struct ArgbImage {
  AnyPixels pixels;
  Depth depth() const { return static_cast<Depth>(pixels.index()); }
  int32_t width() const;
  int32_t height() const;
  bool operator==(const ArgbImage&) const = default;
};

// Pixels as a file stores them: R, G, B, A; 16-bit white is 65535. Any type
// other than 8 or 16 bits is held as float.
struct FileImage {
  AnyPixels pixels;
  int32_t width() const;
  int32_t height() const;
};

// Converts file values to the effect at `depth`, reordering RGBA to ARGB.
ArgbImage FileToEffect(const FileImage& file, Depth depth);

// Converts effect values to a file of `fileDepth`, reordering ARGB to RGBA.
FileImage EffectToFile(const ArgbImage& image, Depth fileDepth);

}  // namespace morvane::cli
