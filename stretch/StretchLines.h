// The line routines behind every StretchKernel. Included only by the files that build the
// family (once per instruction set); depth, intensity origin, channel variant, edge mode and
// whether multipliers act are template parameters, so the per-step loop has no branch on any of
// them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "stretch/Distribution.h"
#include "stretch/EdgeModes.h"
#include "stretch/KernelIsa.h"
#include "stretch/LineResampler.h"
#include "stretch/PixelTraits.h"
#include "stretch/Shading.h"
#include "stretch/StretchCall.h"
#include "stretch/StretchKernel.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// One line's placement in memory, in channel elements: its first pixel in the direction of
// travel, the distance between consecutive lines, and between consecutive pixels of a line.
struct LineLayout {
  std::ptrdiff_t first;
  std::ptrdiff_t lineStep;
  std::ptrdiff_t pixelStep;
};

inline LineLayout ImageLineLayout(Direction direction, std::ptrdiff_t stride, int32_t width,
                                  int32_t height) {
  switch (direction) {
    case Direction::Left:
      return {std::ptrdiff_t{width - 1} * 4, stride, -4};
    case Direction::Down:
      return {0, 4, stride};
    case Direction::Up:
      return {std::ptrdiff_t{height - 1} * stride, 4, -stride};
    case Direction::Right:
      break;
  }
  return {0, stride, 4};
}

using morvane::KernelImages;

// Intensity read from the image's own line at a whole position. The intensity is never faded,
// so Transparent samples like Wrap.
template <typename Channel, EdgeMode Mode>
class SelfIntensitySource {
 public:
  static constexpr EdgeMode kMode = Mode == EdgeMode::Transparent ? EdgeMode::Wrap : Mode;

  SelfIntensitySource() = default;
  SelfIntensitySource(const StretchCall& call, const KernelImages<Channel>&, const Channel* line,
                      std::ptrdiff_t pixelStep, int32_t)
      : line_(line), step_(pixelStep), walker_(call.length, call.intensityStart) {}

  [[gnu::always_inline]] const Channel* Pixel() const { return line_ + walker_.Index() * step_; }
  [[gnu::always_inline]] void Advance() { walker_.Advance(); }

 private:
  const Channel* line_ = nullptr;
  std::ptrdiff_t step_ = 0;
  LinePositionWalker<kMode> walker_;
};

// Intensity read from the layer line that corresponds to an image line, at a fixed-point
// position. Along the line pixels are counted from the layer's origin (Right, Down) or back
// from its far edge (Left, Up); every sample stays inside the layer.
template <typename Channel, EdgeMode Mode>
class LayerIntensitySource {
 public:
  static constexpr EdgeMode kMode = Mode == EdgeMode::Transparent ? EdgeMode::Wrap : Mode;

  LayerIntensitySource() = default;
  LayerIntensitySource(const StretchCall& call, const KernelImages<Channel>& images, const Channel*,
                       std::ptrdiff_t, int32_t line)
      : walker_(call.intensityLength, call.layer.alongStep, call.intensityStart) {
    const bool rows = call.direction == Direction::Right || call.direction == Direction::Left;
    const bool forward = call.direction == Direction::Right || call.direction == Direction::Down;
    const int64_t crossOrigin = rows ? call.layer.originY : call.layer.originX;
    const int32_t crossExtent = rows ? images.layerHeight : images.layerWidth;
    const int64_t cross = std::clamp<int64_t>(
        (int64_t{line} * call.layer.crossStep + crossOrigin * kLayerOne) >> kLayerFractionBits, 0,
        crossExtent - 1);
    extent_ = rows ? images.layerWidth : images.layerHeight;
    origin_ = forward ? (rows ? call.layer.originX : call.layer.originY) : extent_ - 1;
    sign_ = forward ? 1 : -1;
    base_ = images.layer + (rows ? cross * images.layerStride : cross * 4);
    step_ = rows ? 4 : images.layerStride;
  }

  [[gnu::always_inline]] const Channel* Pixel() const {
    const int32_t along = std::clamp(origin_ + sign_ * walker_.Pixel(), 0, extent_ - 1);
    return base_ + along * step_;
  }
  [[gnu::always_inline]] void Advance() { walker_.Advance(); }

 private:
  LayerPositionWalker<kMode> walker_;
  const Channel* base_ = nullptr;
  std::ptrdiff_t step_ = 0;
  int32_t origin_ = 0;
  int32_t sign_ = 1;
  int32_t extent_ = 1;
};

// Whether the step multipliers can differ from 1.0 for a variant: a shading table with an entry
// other than 1.0 routed to channels the variant writes, or the Transparent fade on alpha. When
// they cannot, the kernel leaves the multiplications by 1.0 out, which changes no value.
template <ChannelVariant Variant>
bool MultipliersAct(const StretchCall& call) {
  if (call.edgeMode == EdgeMode::Transparent && kWritesAlpha<Variant>) return true;
  bool unit = true;
  for (int32_t i = 0; i < call.shading.size; ++i)
    unit = unit && call.shading.entries[i] == 1.0;
  if (unit) return false;
  return call.shadingChannel == ShadingChannel::RGB ? Variant != ChannelVariant::Alpha
                                                    : kWritesAlpha<Variant>;
}

// The multipliers of one channel set: alpha on alpha, colour on red, green and blue.
template <ChannelVariant Variant>
[[gnu::always_inline]] inline ResampledValue<Variant> ChannelMultipliers(double alpha,
                                                                         double colour) {
  if constexpr (kChannelCount<Variant> == 1) {
    return VariantTraits<Variant>::kChannels[0] == kAlpha ? alpha : colour;
  } else {
    return QuadMultipliers(alpha, colour);
  }
}

// Stretch steps are taken in chunks of this many per line: the lengths of a chunk, then its
// positions, then its values.
inline constexpr int32_t kStepChunk = 32;

// One line of the stretch, worked through in three passes per chunk of steps. Begin sets the
// line up and copies its start offset; Lengths measures the intensities of the next steps and
// turns them into stretch lengths; the line's LinePosition (held by the caller, so that the
// position passes of two lines can run side by side) gives each step its filled part; Values
// then writes the output pixels of those steps. All per-call quantities come from the prepared
// call; the object holds only the state of its current line.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode,
          bool kMultiply>
class LineStretcher {
 public:
  using Channel = ChannelType<Depth>;
  using Value = ResampledValue<Variant>;
  using IntensitySource =
      std::conditional_t<Origin == IntensityOrigin::LayerIntensity,
                         LayerIntensitySource<Channel, Mode>, SelfIntensitySource<Channel, Mode>>;

  LineStretcher(const StretchCall& call, const KernelImages<Channel>& images)
      : call_(call),
        images_(images),
        in_(ImageLineLayout(call.direction, images.srcStride, images.width, images.height)),
        out_(ImageLineLayout(call.direction, images.dstStride, images.width, images.height)) {}

  // Sets up `line` and copies its start offset, advancing `position` (reset for the line) by
  // the copied pixels. Returns true when the copy already fills the line; otherwise `room` is
  // the number of output pixels left.
  bool Begin(int32_t line, LinePosition& position, int32_t& room) {
    const int32_t length = call_.length;
    const int32_t feather = call_.featherLength;
    source_ = images_.src + in_.first + std::ptrdiff_t{line} * in_.lineStep;
    cursor_ = OutputCursor<Depth, Variant>(
        images_.dst + out_.first + std::ptrdiff_t{line} * out_.lineStep, out_.pixelStep, length);
    LinePositionWalker<Mode> colour(length, call_.shift.colourStart);
    intensity_ = IntensitySource(call_, images_, source_, in_.pixelStep, line);
    resampler_.ResetLine();

    // Start-offset copy: unstretched, unshaded, alpha faded by the edge.
    const int32_t startCount = call_.startCount;
    for (int32_t i = 0; i < startCount; ++i) {
      cursor_.Copy(Pixel(colour.Index()), colour.Fade(feather));
      colour.Advance();
      intensity_.Advance();
      position.AdvanceCopied();
    }
    room = length - startCount;
    if (startCount >= length) return true;

    // The next source pixel of one step is the current one of the following step: its values
    // and its fade are carried over instead of being read again.
    next_ = colour;
    next_.Advance();
    current_ = LoadChannels<Depth, Variant>(Pixel(colour.Index()));
    fadeCurrent_ = colour.Fade(feather);
    shade_ = ShadeWalker(call_.shading, call_.shift.imageShiftOffset);
    step_ = 0;
    return false;
  }

  // The stretch lengths of the next kStepChunk steps (a chunk may run past the end of the
  // line; the steps after it are never used).
  [[gnu::always_inline]] void Lengths(double* lengths) {
    for (int32_t k = 0; k < kStepChunk; ++k) {
      const double measured = MeasureIntensity<Depth, Variant>(intensity_.Pixel());
      intensity_.Advance();
      double stretch = call_.curve[CurveIndex(measured)];
      stretch = ApplyDistribution(call_.distributionMode, stretch, step_, call_.distributionPixels);
      lengths[k] = GuardStretchLength(stretch);
      ++step_;
    }
  }

  // The output pixels of `count` steps. Returns true when the output line is full.
  [[gnu::always_inline]] bool Values(const double* lengths, const double* filled, int32_t count) {
    // The pass works on local copies of the line's state and of what it reads from the call:
    // its 8-bit stores may alias any object in memory, so state kept in members would be
    // stored and loaded again around every output pixel.
    OutputCursor<Depth, Variant> cursor = cursor_;
    LineResampler<Value> resampler = resampler_;
    LinePositionWalker<Mode> next = next_;
    Value current = current_;
    double fadeCurrent = fadeCurrent_;
    ShadeWalker shade = shade_;
    const Channel* const source = source_;
    const std::ptrdiff_t pixelStep = in_.pixelStep;
    const int32_t feather = call_.featherLength;
    const ShadingChannel shadingChannel = call_.shadingChannel;

    bool full = false;
    for (int32_t k = 0; k < count && !full; ++k) {
      const Value following = LoadChannels<Depth, Variant>(source + next.Index() * pixelStep);
      if constexpr (kMultiply) {
        const StepMultipliers m = RouteShades(shadingChannel, shade.Current(), shade.Next());
        const double fadeNext = next.Fade(feather);
        const Value currentMul =
            ChannelMultipliers<Variant>(m.alphaCurrent * fadeCurrent, m.colourCurrent);
        const Value nextMul = ChannelMultipliers<Variant>(m.alphaNext * fadeNext, m.colourNext);
        full = resampler.StepValues(lengths[k], filled[k], current, following, currentMul, nextMul,
                                    cursor);
        fadeCurrent = fadeNext;
        shade.Advance();
      } else {
        full = resampler.StepValues(lengths[k], filled[k], current, following, cursor);
      }
      current = following;
      next.Advance();
    }
    cursor_ = cursor;
    resampler_ = resampler;
    next_ = next;
    current_ = current;
    fadeCurrent_ = fadeCurrent;
    shade_ = shade;
    return full;
  }

 private:
  [[gnu::always_inline]] const Channel* Pixel(int32_t index) const {
    return source_ + index * in_.pixelStep;
  }

  const StretchCall& call_;
  const KernelImages<Channel>& images_;
  const LineLayout in_;
  const LineLayout out_;

  const Channel* source_ = nullptr;
  OutputCursor<Depth, Variant> cursor_{nullptr, 0, 0};
  IntensitySource intensity_{};
  LineResampler<Value> resampler_;
  LinePositionWalker<Mode> next_;
  Value current_{};
  double fadeCurrent_ = 1.0;
  ShadeWalker shade_{call_.shading, 0};
  int64_t step_ = 0;
};

// Lines a kernel works on side by side: four independent position chains hide most of the
// latency of one (two left the processor idle; eight spill the line state to memory).
inline constexpr int32_t kLinesInFlight = 4;

// Renders lines [first, last) of a prepared call. kLinesInFlight lines are worked on at a time,
// and their position passes run one step of each in turn: the steps of one line form a chain
// of dependent arithmetic, and independent chains side by side keep the processor busy. Lines
// never influence each other, so the order changes nothing.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode,
          bool kMultiply>
void StretchLines(const StretchCall& call, const KernelImages<ChannelType<Depth>>& images,
                  int32_t first, int32_t last) {
  using Stretcher = LineStretcher<Depth, Origin, Variant, Mode, kMultiply>;
  constexpr int32_t kLanes = kLinesInFlight;
  int32_t line = std::max(first, 0);
  const int32_t end = std::min(last, call.lineCount);

  // Begins the next line that needs stretch steps; false when none is left.
  const auto beginNext = [&](Stretcher& s, LinePosition& position, int32_t& room) {
    while (line < end) {
      position.Reset();
      if (!s.Begin(line++, position, room)) return true;
    }
    return false;
  };

  std::array<Stretcher, kLanes> s = [&]<std::size_t... I>(std::index_sequence<I...>) {
    return std::array<Stretcher, kLanes>{((void)I, Stretcher(call, images))...};
  }
  (std::make_index_sequence<kLanes>());
  LinePosition position[kLanes];
  int32_t room[kLanes] = {};
  double lengths[kLanes][kStepChunk];
  double filled[kLanes][kStepChunk];
  bool active[kLanes];
  bool anyActive = false;
  for (int32_t i = 0; i < kLanes; ++i) {
    active[i] = beginNext(s[i], position[i], room[i]);
    anyActive = anyActive || active[i];
  }
  while (anyActive) {
#pragma GCC unroll 8
    for (int32_t i = 0; i < kLanes; ++i) {
      if (active[i]) s[i].Lengths(lengths[i]);
    }
    // Position steps of all lines in turn, until each has a chunk or reaches its line's end.
    int32_t count[kLanes] = {};
    bool more[kLanes];
    bool anyMore = false;
#pragma GCC unroll 8
    for (int32_t i = 0; i < kLanes; ++i) {
      more[i] = active[i];
      anyMore = anyMore || more[i];
    }
    while (anyMore) {
      anyMore = false;
#pragma GCC unroll 8
      for (int32_t i = 0; i < kLanes; ++i) {
        if (more[i]) {
          const bool full = position[i].Step(lengths[i][count[i]], filled[i][count[i]], room[i]);
          ++count[i];
          more[i] = !full && count[i] < kStepChunk;
          anyMore = anyMore || more[i];
        }
      }
    }
    anyActive = false;
    for (int32_t i = 0; i < kLanes; ++i) {
      if (active[i] && s[i].Values(lengths[i], filled[i], count[i])) {
        active[i] = beginNext(s[i], position[i], room[i]);
      }
      anyActive = anyActive || active[i];
    }
  }
}

template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode>
LineRangeFn<Depth> SelectLines(bool multiply) {
  return multiply ? &StretchLines<Depth, Origin, Variant, Mode, true>
                  : &StretchLines<Depth, Origin, Variant, Mode, false>;
}

// The line routine for a prepared call: specialised by edge mode and by whether multipliers act.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant>
LineRangeFn<Depth> SelectLines(const StretchCall& call) {
  const bool multiply = MultipliersAct<Variant>(call);
  switch (call.edgeMode) {
    case EdgeMode::Mirror:
      return SelectLines<Depth, Origin, Variant, EdgeMode::Mirror>(multiply);
    case EdgeMode::RepeatLast:
      return SelectLines<Depth, Origin, Variant, EdgeMode::RepeatLast>(multiply);
    case EdgeMode::Transparent:
      return SelectLines<Depth, Origin, Variant, EdgeMode::Transparent>(multiply);
    case EdgeMode::Wrap:
      break;
  }
  return SelectLines<Depth, Origin, Variant, EdgeMode::Wrap>(multiply);
}

// The line routines of this build for every intensity origin and channel variant.
template <PixelDepth Depth>
constexpr LineRoutines<Depth> MakeLineRoutines() {
  using O = IntensityOrigin;
  using V = ChannelVariant;
  return {{&SelectLines<Depth, O::SelfIntensity, V::Luma>,
           &SelectLines<Depth, O::SelfIntensity, V::Red>,
           &SelectLines<Depth, O::SelfIntensity, V::Green>,
           &SelectLines<Depth, O::SelfIntensity, V::Blue>,
           &SelectLines<Depth, O::SelfIntensity, V::Alpha>,
           &SelectLines<Depth, O::SelfIntensity, V::LumaNoAlpha>},
          {&SelectLines<Depth, O::LayerIntensity, V::Luma>,
           &SelectLines<Depth, O::LayerIntensity, V::Red>,
           &SelectLines<Depth, O::LayerIntensity, V::Green>,
           &SelectLines<Depth, O::LayerIntensity, V::Blue>,
           &SelectLines<Depth, O::LayerIntensity, V::Alpha>,
           &SelectLines<Depth, O::LayerIntensity, V::LumaNoAlpha>}};
}

}  // namespace MORVANE_ISA
}  // namespace morvane::detail

// Defines the getter GETTER<DEPTH>() of this build's line routines.
#define MORVANE_DEFINE_LINE_ROUTINES(GETTER, DEPTH)                                     \
  template <>                                                                           \
  const LineRoutines<DEPTH>& GETTER<DEPTH>() {                                          \
    static constexpr LineRoutines<DEPTH> kRoutines = detail::MakeLineRoutines<DEPTH>(); \
    return kRoutines;                                                                   \
  }
