#include "cli/Pixels.h"

#include "cli/ChannelConvert.h"
#include "sdk/ChannelOrder.h"

namespace morvane::cli {

std::string_view DepthName(Depth depth) {
  switch (depth) {
    case Depth::Depth8:
      return "8";
    case Depth::Depth16:
      return "16";
    case Depth::Depth32f:
      return "32f";
  }
  return "?";
}

int32_t ArgbImage::width() const {
  return std::visit([](const auto& p) { return p.width; }, pixels);
}
int32_t ArgbImage::height() const {
  return std::visit([](const auto& p) { return p.height; }, pixels);
}
int32_t FileImage::width() const {
  return std::visit([](const auto& p) { return p.width; }, pixels);
}
int32_t FileImage::height() const {
  return std::visit([](const auto& p) { return p.height; }, pixels);
}

namespace {

AnyPixels MakePixels(Depth depth, int32_t w, int32_t h) {
  switch (depth) {
    case Depth::Depth8:
      return Pixels<uint8_t>(w, h);
    case Depth::Depth16:
      return Pixels<uint16_t>(w, h);
    case Depth::Depth32f:
      break;
  }
  return Pixels<float>(w, h);
}

// A file's 16-bit values are first brought to the effect's 16-bit scale; 8-bit
// and float values are already in effect units.
template <typename Channel>
Channel FileValueToEffect(Channel v) {
  if constexpr (std::is_same_v<Channel, uint16_t>)
    return FileSixteenToInternal(v);
  else
    return v;
}

template <typename Channel>
Channel EffectValueToFile(Channel v) {
  if constexpr (std::is_same_v<Channel, uint16_t>)
    return InternalSixteenToFile(v);
  else
    return v;
}

// Every pixel of `from` into a new image of `depth`, channel kArgbOfRgba[c] on the effect's side
// of channel c on the file's side, each value converted by `convert`.
template <bool kToEffect, typename Convert>
AnyPixels Reordered(const AnyPixels& from, Depth depth, int32_t width, int32_t height,
                    Convert convert) {
  AnyPixels out = MakePixels(depth, width, height);
  std::visit(
      [&](const auto& src, auto& dst) {
        using To = typename std::decay_t<decltype(dst.values)>::value_type;
        const std::size_t count = src.values.size() / 4;
        for (std::size_t p = 0; p < count; ++p) {
          for (int c = 0; c < 4; ++c) {
            const std::size_t file = 4 * p + c, effect = 4 * p + kArgbOfRgba[c];
            dst.values[kToEffect ? effect : file] =
                convert.template operator()<To>(src.values[kToEffect ? file : effect]);
          }
        }
      },
      from, out);
  return out;
}

}  // namespace

// A 16-bit file and float go straight to each other; every other pair through the effect's scale.
ArgbImage FileToEffect(const FileImage& file, Depth depth) {
  return ArgbImage{
      Reordered<true>(file.pixels, depth, file.width(), file.height(), []<typename To>(auto value) {
        if constexpr (std::is_same_v<decltype(value), uint16_t> && std::is_same_v<To, float>)
          return FileSixteenToFloat(value);
        else
          return ConvertChannel<To>(FileValueToEffect(value));
      })};
}

FileImage EffectToFile(const ArgbImage& image, Depth fileDepth) {
  return FileImage{Reordered<false>(
      image.pixels, fileDepth, image.width(), image.height(), []<typename To>(auto value) {
        if constexpr (std::is_same_v<decltype(value), float> && std::is_same_v<To, uint16_t>)
          return FloatToFileSixteen(value);
        else
          return EffectValueToFile(ConvertChannel<To>(value));
      })};
}

}  // namespace morvane::cli
