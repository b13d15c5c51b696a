#include "tests/windows/RenderCases.h"

#include <array>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace morvane::wincheck {

namespace {

constexpr std::array kDepths{hostsim::PixelDepth::Bits8, hostsim::PixelDepth::Bits16,
                             hostsim::PixelDepth::Float32};

uint32_t Hash(uint32_t x) {
  x ^= x >> 16;
  x *= 0x7FEB352Du;
  x ^= x >> 15;
  x *= 0x846CA68Bu;
  x ^= x >> 16;
  return x;
}

uint32_t ReadLittleEndian32(const uint8_t* bytes) {
  return uint32_t{bytes[0]} | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 |
         uint32_t{bytes[3]} << 24;
}

}  // namespace

const std::vector<RenderCase>& SyntheticCases() {
  static const std::vector<RenderCase> cases{
      {"sine-curve", {{"Stretch Curve", "Sine Wave"}, {"Morvane", 6.0}, {"Curve Phase", 40.0}}},
      {"sine-curve-smooth-down",
       {{"Stretch Curve", "Sine Wave"},
        {"Curve Smoothness", 2.5},
        {"Direction", "Down"},
        {"Morvane", 12.0},
        {"Pixel Size", 1.5}}},
      {"sine-curve-layer-red-up",
       {{"Stretch Curve", "Sine Wave"}, {"Channels", "Red"}, {"Direction", "Up"}, {"Morvane", 9.0}},
       true},
      {"sine-shading-rgb",
       {{"Shading", "Sine Wave"},
        {"Shading Channel(s)", "RGB"},
        {"Shading Opacity", 80.0},
        {"Shading Interval Size", 13.0},
        {"Shading Interval Phase", 30.0},
        {"Morvane", 4.0}}},
      {"sine-shading-alpha-left",
       {{"Shading", "Sine Wave"},
        {"Shading Channel(s)", "Alpha"},
        {"Shading Opacity", 0.0},
        {"Shading Interval Size", 7.0},
        {"Direction", "Left"},
        {"Edge Mode", "Mirror"}}},
      // Interval sizes whose sine-shading tables hold values on which run-time
      // cosines are known to differ in the last bit (26: entry 5, 48: entry 29),
      // at full strength (opacity 0 leaves none of the unshaded image).
      {"sine-shading-26-rgb",
       {{"Shading", "Sine Wave"},
        {"Shading Channel(s)", "RGB"},
        {"Shading Opacity", 0.0},
        {"Shading Interval Size", 26.0},
        {"Morvane", 3.0}}},
      {"sine-shading-48-alpha-down",
       {{"Shading", "Sine Wave"},
        {"Shading Channel(s)", "Alpha"},
        {"Shading Opacity", 0.0},
        {"Shading Interval Size", 48.0},
        {"Direction", "Down"}}},
      {"distribution-up-1.7",
       {{"Distribution Mode", "Linear Ramp Up"}, {"Distribution Range", 1.7}, {"Morvane", 5.0}}},
      {"distribution-down-2-sine-all",
       {{"Distribution Mode", "Linear Ramp Down"},
        {"Distribution Range", 2.0},
        {"Stretch Curve", "Sine Wave"},
        {"Shading", "Sine Wave"},
        {"Shading Opacity", 60.0},
        {"Direction", "Down"},
        {"Morvane", 7.0}}},
      {"distribution-up-1.333-rgba",
       {{"Distribution Mode", "Linear Ramp Up"},
        {"Distribution Range", 1.333},
        {"Channels", "RGBA"},
        {"Stretch Curve", "Sine Wave"},
        {"Curve Phase", -75.0}}},
      {"distribution-constant-pixel-size-0.5",
       {{"Distribution Mode", "Constant"}, {"Pixel Size", 0.5}, {"Morvane", 3.0}}},
      {"exp-transparent-feather",
       {{"Stretch Curve", "Exp Up"},
        {"Edge Mode", "Transparent"},
        {"Transparency Feather", 30.0},
        {"Image Shift Phase", 100.0},
        {"Stretch Start Offset", 20.0}}},
      {"triangle-luma-no-alpha",
       {{"Stretch Curve", "Triangle Wave"},
        {"Channels", "Luma (no Alpha)"},
        {"Edge Mode", "Repeat Last"},
        {"Image Shift Phase Sync", 0.0},
        {"Image Shift Phase", 200.0}}},
  };
  return cases;
}

const std::vector<RenderCase>& SampleCases() {
  static const std::vector<RenderCase> cases{
      {"sample-defaults", {{"Morvane", 10.0}}},
      {"sample-sine-all",
       {{"Stretch Curve", "Sine Wave"},
        {"Morvane", 8.0},
        {"Shading", "Sine Wave"},
        {"Shading Opacity", 50.0},
        {"Distribution Mode", "Linear Ramp Up"},
        {"Distribution Range", 1.5}}},
      {"sample-sine-shading-26",
       {{"Shading", "Sine Wave"},
        {"Shading Channel(s)", "RGB"},
        {"Shading Opacity", 0.0},
        {"Shading Interval Size", 26.0},
        {"Morvane", 2.0}}},
  };
  return cases;
}

SourceImage SyntheticImage(int32_t width, int32_t height) {
  SourceImage image{width, height, {}};
  image.argb.resize(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const uint32_t noise = Hash(static_cast<uint32_t>(y * width + x));
      uint8_t* p = &image.argb[(static_cast<size_t>(y) * static_cast<size_t>(width) +
                                static_cast<size_t>(x)) *
                               4];
      const bool hole = (x / 8 + y / 8) % 5 == 0;
      p[0] = hole ? static_cast<uint8_t>(noise & 0x7F) : 255;
      p[1] = static_cast<uint8_t>(x * 255 / (width - 1));
      p[2] = static_cast<uint8_t>(y * 255 / (height - 1));
      p[3] = static_cast<uint8_t>((noise >> 8) & 0xFF);
    }
  }
  return image;
}

SourceImage ReadSourceImage(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                             std::istreambuf_iterator<char>());
  constexpr char kMagic[] = "ARGB8RAW";
  constexpr size_t kHeader = 16;
  if (bytes.size() < kHeader || std::memcmp(bytes.data(), kMagic, 8) != 0) {
    throw std::runtime_error(path.string() + ": not a raw ARGB image");
  }
  SourceImage image;
  image.width = static_cast<int32_t>(ReadLittleEndian32(&bytes[8]));
  image.height = static_cast<int32_t>(ReadLittleEndian32(&bytes[12]));
  const size_t size = static_cast<size_t>(image.width) * static_cast<size_t>(image.height) * 4;
  if (image.width <= 0 || image.height <= 0 || bytes.size() != kHeader + size) {
    throw std::runtime_error(path.string() + ": size does not match its header");
  }
  image.argb.assign(bytes.begin() + kHeader, bytes.end());
  return image;
}

void FillWorld(const SourceImage& image, const PF_EffectWorld& world, hostsim::PixelDepth depth) {
  if (world.width != image.width || world.height != image.height) {
    throw std::invalid_argument("FillWorld: size mismatch");
  }
  auto* base = reinterpret_cast<uint8_t*>(world.data);
  for (int32_t y = 0; y < image.height; ++y) {
    uint8_t* row = base + static_cast<ptrdiff_t>(y) * world.rowbytes;
    const uint8_t* src = &image.argb[static_cast<size_t>(y) * static_cast<size_t>(image.width) * 4];
    for (int32_t i = 0; i < image.width * 4; ++i) {
      const uint32_t v = src[i];
      switch (depth) {
        case hostsim::PixelDepth::Bits8:
          row[i] = static_cast<uint8_t>(v);
          break;
        case hostsim::PixelDepth::Bits16: {
          const auto v16 = static_cast<uint16_t>((v * 32768 + 127) / 255);
          std::memcpy(row + i * 2, &v16, 2);
          break;
        }
        case hostsim::PixelDepth::Float32: {
          const float f = static_cast<float>(v) / 255.0f;
          std::memcpy(row + i * 4, &f, 4);
          break;
        }
      }
    }
  }
}

std::span<const hostsim::PixelDepth> AllDepths() {
  return kDepths;
}

const char* DepthName(hostsim::PixelDepth depth) {
  switch (depth) {
    case hostsim::PixelDepth::Bits8:
      return "8";
    case hostsim::PixelDepth::Bits16:
      return "16";
    case hostsim::PixelDepth::Float32:
      return "32f";
  }
  return "?";
}

}  // namespace morvane::wincheck
