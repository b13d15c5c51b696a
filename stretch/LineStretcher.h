// One line of the stretch: start offset, stretch lengths, positions and output values.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#if defined(__AVX2__)
#include <immintrin.h>
#endif

#include "stretch/Distribution.h"
#include "stretch/IntensitySources.h"
#include "stretch/KernelIsa.h"
#include "stretch/LineLayout.h"
#include "stretch/LineResampler.h"
#include "stretch/Prefetch.h"
#include "stretch/StepMultipliers.h"
#include "stretch/StepPlans.h"

namespace morvane::detail {
inline namespace MORVANE_ISA {

// The lengths pass's lanes: kLengthLanes stretch steps, as doubles and as curve indices (a plain
// double and int32_t for one lane).
using StepLanes = std::conditional_t<kLengthLanes == 1, double,
                                     double __attribute__((vector_size(8 * kLengthLanes)))>;
using StepIndexLanes = std::conditional_t<kLengthLanes == 1, int32_t,
                                          int32_t __attribute__((vector_size(4 * kLengthLanes)))>;
static_assert(kStepChunk % kLengthLanes == 0 && kShortestColumnChunk % kLengthLanes == 0);

// Lane j of `lanes`.
template <typename Lanes>
[[gnu::always_inline]] inline auto LaneOf(const Lanes& lanes, int32_t j) {
  if constexpr (std::is_arithmetic_v<Lanes>) {
    return lanes;
  } else {
    return lanes[j];
  }
}

// The truncations of curve positions, lane by lane. (IndexLanes is a parameter so that the
// conversion a one-lane build never takes is not checked there.)
template <typename Lanes, typename IndexLanes = StepIndexLanes>
[[gnu::always_inline]] inline IndexLanes TruncateCurvePositions(Lanes position) {
  if constexpr (std::is_arithmetic_v<Lanes>) {
    return static_cast<IndexLanes>(position);
  } else {
    return __builtin_convertvector(position, IndexLanes);
  }
}

// One line of the stretch, worked through in three passes per chunk of steps. Begin sets the
// line up and copies its start offset; Lengths measures the intensities of the next steps and
// turns them into stretch lengths; the position pass (the caller's, which runs the lines of a
// group side by side) plans each step; Values then writes the output pixels of those steps. All
// per-call quantities come from the prepared call; the object holds only the state of its current
// line.
template <PixelDepth Depth, IntensityOrigin Origin, ChannelVariant Variant, EdgeMode Mode,
          bool kMultiply>
class LineStretcher {
 public:
  using Channel = ChannelType<Depth>;
  using Value = ResampledValue<Variant>;
  using ColourWalker = LinePixelWalker<Mode, Channel>;
  using IntensitySource =
      std::conditional_t<Origin == IntensityOrigin::LayerIntensity,
                         LayerIntensitySource<Channel, Mode>, SelfIntensitySource<Channel, Mode>>;

  LineStretcher(const StretchCall& call, const KernelImages<Channel>& images)
      : call_(call),
        images_(images),
        in_(ImageLineLayout(call.direction, images.srcStride, images.width, images.height)),
        out_(ImageLineLayout(call.direction, images.dstStride, images.width, images.height)),
        alongColumns_(AlongColumns(call.direction)),
        streamed_(StreamsOutput(alongColumns_, images.dstStride * std::ptrdiff_t{sizeof(Channel)},
                                images.height)) {}

  // Sets up `line` and copies its start offset, advancing `position` (reset for the line) by
  // the copied pixels. Returns true when the copy already fills the line; otherwise `room` is
  // the number of output pixels left.
  bool Begin(int32_t line, LinePosition& position, int32_t& room) {
    const int32_t length = call_.length;
    const int32_t feather = call_.featherLength;
    const Channel* const source = images_.src + in_.first + std::ptrdiff_t{line} * in_.lineStep;
    cursor_ = OutputCursor<Depth, Variant>(
        images_.dst + out_.first + std::ptrdiff_t{line} * out_.lineStep, out_.pixelStep, length,
        streamed_);
    ColourWalker colour(source, in_.pixelStep,
                        LinePositionWalker<Mode>(length, call_.shift.colourStart));
    intensity_ = IntensitySource(call_, images_, source, in_.pixelStep, line);
    resampler_.ResetLine();

    // Start-offset copy: unstretched, unshaded, alpha faded by the edge.
    const int32_t startCount = call_.startCount;
    for (int32_t i = 0; i < startCount; ++i) {
      cursor_.Copy(colour.Pixel(), colour.Fade(feather));
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
    current_ = LoadChannels<Depth, Variant>(colour.Pixel());
    shade_ = ShadeWalker(call_.shading, call_.shift.imageShiftOffset);
    if constexpr (kMultiply) {
      const StepMultipliers m = RouteShades(call_.shadingChannel, shade_.Current(), shade_.Next());
      currentMul_ =
          ChannelMultipliers<Variant>(m.alphaCurrent * colour.Fade(feather), m.colourCurrent);
      currentScaled_ = current_ * currentMul_;
    }
    step_ = 0;
    return false;
  }

  // The line's next output pixels go to `first` and on, `step` channel elements apart; `left`
  // of them are left to the line's end.
  void Redirect(Channel* first, std::ptrdiff_t step, int32_t left) {
    cursor_ = OutputCursor<Depth, Variant>(first, step, left);
  }

  // The stretch lengths of the next `steps` steps (a multiple of kLengthLanes), kStride apart (a
  // chunk may run past the end of the line; the steps after it are never used). Steps are
  // measured kLengthLanes at a time, one per lane.
  template <int32_t kStride>
  [[gnu::always_inline]] void Lengths(double* lengths, int32_t steps) {
    // Local copies, as in Values: a store of a length could otherwise change the members.
    IntensitySource intensity = intensity_;
    const int64_t first = step_;
    const double distributionPixels = static_cast<double>(call_.distributionPixels);
    const StepLanes laneNumbers =
        LanesOf<StepLanes>([](int32_t j) { return static_cast<double>(j); });
    const int32_t distributionMode =
        DistributionModeFor(call_.distributionMode, static_cast<double>(first),
                            static_cast<double>(first + steps - 1), distributionPixels);
    WithDistributionMode(distributionMode, [&](auto mode) {
      for (int32_t k = 0; k < steps; k += kLengthLanes) {
        const StepLanes step = laneNumbers + static_cast<double>(first + k);
        const StepLanes stretch = GuardStretchLength(ApplyDistribution<decltype(mode)::value>(
            CurveStretches(intensity), step, distributionPixels));
        for (int32_t j = 0; j < kLengthLanes; ++j)
          lengths[(k + j) * kStride] = LaneOf(stretch, j);
      }
    });
    intensity_ = intensity;
    step_ = first + steps;
    if (!alongColumns_) {
      // Along rows, the source of the chunks to come.
      RequestRowAhead(next_.Pixel(), in_.pixelStep > 0 ? 1 : -1,
                      steps * std::ptrdiff_t{4 * sizeof(Channel)});
    } else {
      // Along columns every pixel is a row away from the last and the processor does not fetch
      // them ahead: ask for the pixels the value pass reads, which the lengths pass has not
      // read when the intensities come from another layer or another place on the line.
      ColourWalker colour = next_;
      for (int32_t k = 0; k < steps; ++k) {
        __builtin_prefetch(colour.Pixel());
        colour.Advance();
      }
    }
  }

  // The output pixels of the first `count` steps of this line's chunk, line `line` of `plans`.
  // Returns true when the output line is full.
  [[gnu::always_inline]] bool Values(const StepPlans& plans, int32_t line, int32_t count) {
    // The pass works on local copies of the line's state and of what it reads from the call:
    // its 8-bit stores may alias any object in memory, so state kept in members would be
    // stored and loaded again around every output pixel.
    OutputCursor<Depth, Variant> cursor = cursor_;
    LineResampler<Value> resampler = resampler_;
    ColourWalker next = next_;
    Value current = current_;
    Value currentMul = currentMul_;
    Value currentScaled = currentScaled_;
    ShadeWalker shade = shade_;
    const int32_t feather = call_.featherLength;
    const ShadingChannel shadingChannel = call_.shadingChannel;

    // One step into `sink`, its next pixel read through `walker`; true when it fills the line.
    const auto step = [&](int32_t k, auto& sink, auto& walker) {
      const Value following = LoadChannels<Depth, Variant>(walker.Pixel());
      const double length = plans.length[k * kLockstepLines + line];
      const PlannedStep plan(plans, k, line);
      bool filledLine;
      if constexpr (kMultiply) {
        // This step's next multipliers are the current ones of the step after it.
        const StepMultipliers m = RouteShades(shadingChannel, shade.Current(), shade.Next());
        const Value nextMul =
            ChannelMultipliers<Variant>(m.alphaNext * walker.Fade(feather), m.colourNext);
        const Value nextScaled = following * nextMul;
        filledLine = resampler.StepValues(length, plan, current, currentMul, currentScaled,
                                          nextScaled, sink);
        currentMul = nextMul;
        currentScaled = nextScaled;
        shade.Advance();
      } else {
        filledLine = resampler.StepValues(length, plan, current, following, sink);
      }
      current = following;
      walker.Advance();
      return filledLine;
    };
    // Only a chunk's last step can fill the line: the position pass ends a line's chunk with the
    // step that fills it.
    const auto steps = [&](auto& walker) {
      typename OutputCursor<Depth, Variant>::Unbounded inner(cursor);
      for (int32_t k = 0; k + 1 < count; ++k)
        step(k, inner, walker);
      return count > 0 && step(count - 1, cursor, walker);
    };
    bool full;
    if constexpr (Mode != EdgeMode::Transparent) {
      // Away from the line's ends the chunk's next pixels lie one after another.
      if (next.ForwardFor(count)) {
        ForwardPixels ahead{next.Pixel(), next.Step()};
        full = steps(ahead);
        next.SkipForward(count);
      } else {
        full = steps(next);
      }
    } else {
      full = steps(next);
    }
    cursor_ = cursor;
    resampler_ = resampler;
    next_ = next;
    current_ = current;
    if constexpr (kMultiply) {
      currentMul_ = currentMul;
      currentScaled_ = currentScaled;
    }
    shade_ = shade;
    return full;
  }

 private:
  using PixelLanes = std::array<const Channel*, kLengthLanes>;

  // Pixels met one after another, `step` apart, with no edge on the way: a walker's plain part.
  struct ForwardPixels {
    const Channel* pixel;
    std::ptrdiff_t step;
    [[gnu::always_inline]] const Channel* Pixel() const { return pixel; }
    [[gnu::always_inline]] static double Fade(int32_t) { return 1.0; }
    [[gnu::always_inline]] void Advance() { pixel += step; }
  };

  // The next kLengthLanes pixels of `intensity`, one per lane.
  [[gnu::always_inline]] static PixelLanes NextPixels(IntensitySource& intensity) {
    PixelLanes pixels;
    if constexpr (Origin == IntensityOrigin::SelfIntensity) {
      // Away from the line's ends, one look at the edge serves all the lanes.
      if (intensity.ForwardFor(kLengthLanes)) {
        for (int32_t j = 0; j < kLengthLanes; ++j)
          pixels[j] = intensity.Pixel() + j * intensity.Step();
        intensity.SkipForward(kLengthLanes);
        return pixels;
      }
    }
    for (const Channel*& pixel : pixels) {
      pixel = intensity.Pixel();
      intensity.Advance();
    }
    return pixels;
  }

  // The curve's stretch lengths at the intensities this variant measures from the next
  // kLengthLanes pixels of `intensity`, one per lane.
  [[gnu::always_inline]] StepLanes CurveStretches(IntensitySource& intensity) const {
    if constexpr (Depth == PixelDepth::Depth8) {
      const PixelLanes pixels = NextPixels(intensity);
#if defined(__AVX2__)
      // The lanes' pixels side by side: where all are opaque (or alpha is what is measured), the
      // opaque table's entries at their colour sums, loaded together.
      const auto words = __m128i(LanesOf<StepIndexLanes>([&](int32_t j) {
        int32_t word;
        std::memcpy(&word, pixels[j], 4);
        return word;
      }));
      if (AllOpaque(words)) return Gather(call_.opaqueStretch8.data(), OpaqueTableIndex(words));
#endif
      // Pixel by pixel, each from the opaque table or, where it is not opaque, from the curve:
      // little arithmetic is left to share between the lanes.
      return LanesOf<StepLanes>([&](int32_t j) { return CurveStretch(pixels[j]); });
    } else {
      // Each channel of every pixel in the lanes, in double.
      const ChannelValues<Depth, StepLanes> read = ChannelLanes(NextPixels(intensity).data());
      const StepIndexLanes index =
          TruncateCurvePositions(CurvePosition(MeasureIntensityWith<Depth, Variant>(read)));
      return CurveLengths(index);
    }
  }

  // The curve's stretch lengths at `index` (each 0 ... 1023), one per lane.
  [[gnu::always_inline]] StepLanes CurveLengths(StepIndexLanes index) const {
#if defined(__AVX2__)
    return Gather(call_.curve.data(), __m128i(index));
#else
    return LanesOf<StepLanes>([&](int32_t j) { return call_.curve[LaneOf(index, j)]; });
#endif
  }

#if defined(__AVX2__)
  // table[index[j]] in lane j. The indices leave the register as two 64-bit words and the
  // entries are loaded one by one: on the benchmark machine this took fewer cycles than a
  // gathering load, and than taking the indices out one at a time.
  [[gnu::always_inline]] static StepLanes Gather(const double* table, __m128i index) {
    const auto pair01 = static_cast<uint64_t>(_mm_cvtsi128_si64(index));
    const auto pair23 = static_cast<uint64_t>(_mm_extract_epi64(index, 1));
    const __m128d lanes01 =
        _mm_loadh_pd(_mm_load_sd(table + static_cast<uint32_t>(pair01)), table + (pair01 >> 32));
    const __m128d lanes23 =
        _mm_loadh_pd(_mm_load_sd(table + static_cast<uint32_t>(pair23)), table + (pair23 >> 32));
    return StepLanes(_mm256_set_m128d(lanes23, lanes01));
  }

  // Whether the alpha weighting changes nothing for any of four 8-bit pixels (one to a 32-bit
  // lane): all are opaque, or the variant has none.
  [[gnu::always_inline]] static bool AllOpaque(__m128i words) {
    if constexpr (Variant == ChannelVariant::Alpha) {
      return true;
    } else {
      const __m128i alpha = _mm_and_si128(words, _mm_set1_epi32(0xff));
      return _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(alpha, _mm_set1_epi32(0xff)))) == 0xf;
    }
  }

  // The opaque table's index of four 8-bit pixels, as CurveStretch forms it: the sum of the three
  // colour channels, or three times the one channel measured.
  [[gnu::always_inline]] static __m128i OpaqueTableIndex(__m128i words) {
    if constexpr (kChannelCount<Variant> == 1) {
      constexpr int kShift = 8 * VariantTraits<Variant>::kChannels[0];
      const __m128i channel = _mm_and_si128(_mm_srli_epi32(words, kShift), _mm_set1_epi32(0xff));
      return _mm_add_epi32(_mm_add_epi32(channel, channel), channel);
    } else {
      // Red and green-plus-blue as 16-bit sums, then their sum.
      const __m128i pairs = _mm_maddubs_epi16(words, _mm_set1_epi32(0x01010100));
      return _mm_madd_epi16(pairs, _mm_set1_epi16(1));
    }
  }
#endif

  // Channel c of pixels[j] in lane j of value[c]. Where a pixel's four channels load as one
  // register of lanes, each pixel is loaded whole and the four are transposed.
  [[gnu::always_inline]] static ChannelValues<Depth, StepLanes> ChannelLanes(
      const Channel* const* pixels) {
    if constexpr (std::is_same_v<StepLanes, QuadPart> && kQuadParts == 1) {
      const auto p0 = LoadQuad<Depth>(pixels[0]).part[0];
      const auto p1 = LoadQuad<Depth>(pixels[1]).part[0];
      const auto p2 = LoadQuad<Depth>(pixels[2]).part[0];
      const auto p3 = LoadQuad<Depth>(pixels[3]).part[0];
      const auto even01 = __builtin_shufflevector(p0, p1, 0, 4, 2, 6);
      const auto odd01 = __builtin_shufflevector(p0, p1, 1, 5, 3, 7);
      const auto even23 = __builtin_shufflevector(p2, p3, 0, 4, 2, 6);
      const auto odd23 = __builtin_shufflevector(p2, p3, 1, 5, 3, 7);
      return {{__builtin_shufflevector(even01, even23, 0, 1, 4, 5),
               __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5),
               __builtin_shufflevector(even01, even23, 2, 3, 6, 7),
               __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7)}};
    } else {
      const auto channel = [&](int c) {
        return LanesOf<StepLanes>([&](int32_t j) { return static_cast<double>(pixels[j][c]); });
      };
      return {{channel(0), channel(1), channel(2), channel(3)}};
    }
  }

  // The curve's stretch length at the intensity this variant measures from 8-bit `pixel`.
  [[gnu::always_inline]] double CurveStretch(const Channel* pixel) const {
    // The alpha weighting changes nothing for an opaque pixel, and the Alpha variant has none.
    if (Variant == ChannelVariant::Alpha || pixel[kAlpha] == 255) {
      if constexpr (kChannelCount<Variant> == 1) {
        return call_.opaqueStretch8[3 * pixel[VariantTraits<Variant>::kChannels[0]]];
      } else {
        return call_.opaqueStretch8[pixel[kGreen] + pixel[kRed] + pixel[kBlue]];
      }
    }
    return call_.curve[CurveIndex(MeasureIntensity<Depth, Variant>(pixel))];
  }

  const StretchCall& call_;
  const KernelImages<Channel>& images_;
  const LineLayout in_;
  const LineLayout out_;
  const bool alongColumns_;
  const bool streamed_;

  OutputCursor<Depth, Variant> cursor_{nullptr, 0, 0};
  IntensitySource intensity_{};
  LineResampler<Value> resampler_;
  ColourWalker next_;
  Value current_{};
  // With shading or an edge fade: the current pixel's multipliers, and the pixel times them.
  Value currentMul_{};
  Value currentScaled_{};
  ShadeWalker shade_{call_.shading, 0};
  int64_t step_ = 0;
};

}  // namespace MORVANE_ISA
}  // namespace morvane::detail
