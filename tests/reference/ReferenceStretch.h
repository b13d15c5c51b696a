// A plain, slow, whole-frame model of the stretch effect, written step by step
// for clarity and used to check the optimised kernels bit for bit. Every
// quantity is computed in the precision the effect uses (double, or float where
// the effect narrows), in the same order of operations, with no hoisting or
// specialisation. It depends on nothing of the effect or the host interface.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace morvane::reference {

// The twenty parameter values of one frame, field for field as the render
// record holds them (popups 0-based, percentages and 16.16 angles raw).
struct Settings {
  int32_t channelMode = 0;
  double intensity = 100.0;
  int32_t direction = 0;
  double stretchAmount = 1.0;
  double pixelSize = 1.0;
  double startOffset = 0.0;
  int32_t curveShape = 0;
  int32_t curvePhase = 0;
  double curveSmoothness = 0.0;
  int32_t distributionMode = 0;
  double distributionRange = 2.0;
  int32_t imageShiftPhase = 0;
  int32_t imageShiftPhaseSync = 1;
  int32_t shadingMode = 0;
  int32_t shadingIntervalSize = 10;
  int32_t shadingIntervalPhase = 0;
  double shadingOpacity = 0.0;
  int32_t shadingChannels = 0;
  int32_t edgeMode = 0;
  double transparencyFeather = 0.0;
};

// An image of four-channel pixels (alpha, red, green, blue); stride in channel
// elements.
template <typename T>
struct Image {
  T* data = nullptr;
  int32_t stride = 0;
  int32_t width = 0;
  int32_t height = 0;
};

template <typename T>
struct ConstImage {
  const T* data = nullptr;
  int32_t stride = 0;
  int32_t width = 0;
  int32_t height = 0;
};

enum class Variant { Luma, Red, Green, Blue, Alpha, LumaNoAlpha };

enum EdgeModeValue : int32_t { kWrap = 0, kMirror = 1, kRepeatLast = 2, kTransparent = 3 };

// ---- Whole frame -------------------------------------------------------------

// The dispatcher for one depth: copies, intensity origin, kernel sequence.
// `layer` may be null (or have null data / zero size): the intensity then comes
// from the input itself. originX / originY are the output's origin in the layer.
template <typename T>
void Dispatch(const ConstImage<T>& input, const Image<T>& output, const Settings& settings,
              float scale, const ConstImage<T>* layer, int32_t originX, int32_t originY);

// One kernel call: renders `variant` over the output's width and height.
template <typename T>
void Kernel(Variant variant, const ConstImage<T>& input, const Image<T>& output,
            const Settings& settings, float scale, const ConstImage<T>* layer, int32_t originX,
            int32_t originY);

// ---- Stages, exposed for checking them one by one ----------------------------

double CurveValue(int32_t shape, int32_t i, int32_t n, double amplitude, double offset,
                  uint8_t flags);
double SmoothedCurveValue(int32_t shape, int32_t i, int32_t n, double amplitude, double offset,
                          float smoothness, uint8_t flags);
std::array<double, 1024> CurveTable(const Settings& settings);

// k mod n for k >= 0, n - 1 - ((-k) mod n) below zero.
int64_t ReducePeriod(int64_t k, int64_t n);

int32_t NormalEdgeMode(int32_t edgeMode);
int64_t ResolveLinePosition(int32_t edgeMode, int32_t length, int64_t position);
// Fixed-point position (12 fraction bits) in, fixed-point position out.
int64_t ResolveLayerPosition(int32_t edgeMode, int32_t length, int64_t position);
int32_t FeatherLength(double transparencyFeather, int32_t length);
double EdgeFade(int32_t edgeMode, int32_t length, int32_t feather, int64_t position);

struct Shift {
  int32_t scaledPhase;
  int32_t shiftPixels;
  int32_t layerShiftPixels;
  int32_t imageShiftOffset;
  int32_t layerShiftOffset;
  int32_t mirrorTurn;
  int64_t colourStart;
  int64_t layerStart;  // 12 fraction bits
};
Shift ImageShift(const Settings& settings, int32_t length, int32_t layerLength);

std::vector<double> ShadingTable(const Settings& settings, float scale);

int32_t StartCount(double startOffset, int32_t length);
int64_t DistributionPixels(double distributionRange, int32_t length);
double Distribute(int32_t mode, int64_t range, int64_t step, double length);

struct LayerGeometry {
  int32_t layerOriginX;
  int32_t layerOriginY;
  int64_t xStep;
  int64_t yStep;
};
LayerGeometry LayerSampling(int32_t width, int32_t height, int32_t layerWidth, int32_t layerHeight,
                            int32_t originX, int32_t originY);

// Intensity of one pixel (alpha, red, green, blue) for a variant, before the
// clamp; and the curve index it selects.
template <typename T>
double MeasureIntensity(Variant variant, const T* pixel);
int32_t CurveIndex(double intensity);

// One channel of one line through the resampler, with all multipliers 1:
// source value i is `values[i % size]` and its length `lengths[i % size]`.
// Emits `outputLength` values converted to T.
template <typename T>
std::vector<T> ResampleLine(const std::vector<double>& values, const std::vector<double>& lengths,
                            int32_t outputLength);

// The resampler state of one line, for any number of channels.
class LineResampler {
 public:
  LineResampler(int32_t channels, int32_t lineLength);
  // Counts one pixel of the start-offset copy.
  void CountCopiedPixel();
  bool Full() const { return emitted_ >= lineLength_; }
  int32_t Emitted() const { return emitted_; }
  double LinePosition() const { return linePosition_; }
  // One stretch step; `emit` receives (output index along the line, values).
  template <typename Emit>
  void Step(double length, const std::vector<double>& current, const std::vector<double>& next,
            const std::vector<double>& currentMultiplier, const std::vector<double>& nextMultiplier,
            Emit&& emit);

 private:
  int32_t channels_;
  int32_t lineLength_;
  int32_t emitted_ = 0;
  double linePosition_ = 0.0;
  std::vector<double> carry_;
};

template <typename T>
T ConvertEmitted(double value);

}  // namespace morvane::reference

#include "tests/reference/ReferenceResampler.inl"
