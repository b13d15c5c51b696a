#include "tests/reference/ReferenceStretch.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace morvane::reference {

namespace {

constexpr double kPi = 3.14159265359;
constexpr float kTurn = 23592960.0f;  // 360 degrees in 16.16 fixed point
constexpr int64_t kOne = 4096;        // one layer pixel in 12-bit fixed point

enum Direction : int32_t { kRight = 0, kLeft = 1, kDown = 2, kUp = 3 };

int32_t NormalDirection(int32_t direction) {
  return (direction >= kRight && direction <= kUp) ? direction : kRight;
}

template <typename T>
constexpr double White() {
  if constexpr (std::is_same_v<T, uint8_t>) {
    return 255.0;
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    return 32768.0;
  } else {
    return 1.0;
  }
}

// Channel element index of a pixel's first channel.
int64_t PixelIndex(int32_t stride, int32_t x, int32_t y) {
  return static_cast<int64_t>(y) * stride + static_cast<int64_t>(x) * 4;
}

// Image coordinates of position `p` along line `line` for a direction.
void LinePixel(int32_t direction, int32_t lineLength, int32_t line, int64_t p, int32_t& x,
               int32_t& y) {
  const auto pos = static_cast<int32_t>(p);
  switch (direction) {
    case kLeft:
      x = lineLength - 1 - pos;
      y = line;
      break;
    case kDown:
      x = line;
      y = pos;
      break;
    case kUp:
      x = line;
      y = lineLength - 1 - pos;
      break;
    default:
      x = pos;
      y = line;
      break;
  }
}

// Channels (0 alpha, 1 red, 2 green, 3 blue) a variant writes.
std::vector<int> WrittenChannels(Variant variant) {
  switch (variant) {
    case Variant::Luma:
      return {0, 1, 2, 3};
    case Variant::Red:
      return {1};
    case Variant::Green:
      return {2};
    case Variant::Blue:
      return {3};
    case Variant::Alpha:
      return {0};
    case Variant::LumaNoAlpha:
      return {1, 2, 3};
  }
  return {};
}

double ClampUnit(double v) {
  if (std::isnan(v)) {
    return 0.0;
  }
  return std::min(std::max(v, 0.0), 1.0);
}

int32_t EdgePeriod(int32_t edgeMode, int32_t length) {
  switch (NormalEdgeMode(edgeMode)) {
    case kMirror: {
      const int32_t p = 2 * length - 2;
      return p == 0 ? 2 : p;
    }
    case kRepeatLast: {
      const int32_t p = length - 1;
      return p == 0 ? 1 : p;
    }
    default:
      return length;
  }
}

}  // namespace

// ---- Stretch curve -------------------------------------------------------------

double CurveValue(int32_t shape, int32_t i, int32_t n, double amplitude, double offset,
                  uint8_t flags) {
  const double x = static_cast<double>(i) / static_cast<double>(n - 1);
  const double u = static_cast<double>(i) / static_cast<double>(n);
  double y = 0.0;
  switch (shape) {
    case 0:
      y = x * amplitude;
      break;
    case 1:
      y = (1.0 - x) * amplitude;
      break;
    case 2: {
      double t = 0.0;
      if (0.5 > x) {
        t = x + x;
      } else {
        t = 1.0 - 2.0 * (x - 0.5);
      }
      y = t * amplitude;
      break;
    }
    case 3: {
      const double h = amplitude * 0.5;
      y = std::sin(2.0 * (u * kPi)) * h + h;
      break;
    }
    case 4:
      y = ((x * x) * x) * x * amplitude;
      break;
    case 5:
      y = (1.0 - ((x * x) * x) * x) * amplitude;
      break;
    default:
      y = 0.0;
      break;
  }
  y = y + offset;
  if ((flags & 1u) != 0) {
    return y;
  }
  return std::round(y * 10000000.0) / 10000000.0;
}

double SmoothedCurveValue(int32_t shape, int32_t i, int32_t n, double amplitude, double offset,
                          float smoothness, uint8_t flags) {
  const auto K = static_cast<int32_t>(std::ceil(smoothness));  // ceilf on a float
  const float fraction = smoothness - std::trunc(smoothness);
  const auto phi = static_cast<double>(fraction);
  const double v = CurveValue(shape, i, n, amplitude, offset, flags);
  double innerSum = v;
  int32_t innerCount = 1;
  double outerSum = v;
  int32_t outerCount = 1;
  if (!(-K > K)) {
    for (int32_t j = -K; j <= K; ++j) {
      if (j == 0) {
        continue;
      }
      int32_t m = i + j;
      if (m >= 0) {
        m = m % n;
      } else {
        m = m + n;
      }
      const double c = CurveValue(shape, m, n, amplitude, offset, flags);
      if (j != -K && j != K) {
        innerSum += c;
        innerCount += 1;
      }
      outerSum += c;
      outerCount += 1;
    }
  }
  return (innerSum / static_cast<double>(innerCount)) * (1.0 - phi) +
         (outerSum / static_cast<double>(outerCount)) * phi;
}

std::array<double, 1024> CurveTable(const Settings& settings) {
  const double I = settings.intensity / 100.0;
  const double amplitude = I * settings.stretchAmount;
  const double offset = (settings.pixelSize - 1.0) * I + 1.0;
  const auto smoothness = static_cast<float>(settings.curveSmoothness * 10.778947830200195);
  const float turns = static_cast<float>(settings.curvePhase) / kTurn;
  const auto steps = static_cast<int32_t>(turns * 1024.0f);
  const auto r = static_cast<int32_t>(ReducePeriod(steps, 1024));
  std::array<double, 1024> table{};
  for (int32_t i = 0; i < 1024; ++i) {
    table[static_cast<std::size_t>((i + r) % 1024)] =
        SmoothedCurveValue(settings.curveShape, i, 1024, amplitude, offset, smoothness, 0);
  }
  return table;
}

// ---- Periods and edges ---------------------------------------------------------

int64_t ReducePeriod(int64_t k, int64_t n) {
  if (k >= 0) {
    return k % n;
  }
  return n - 1 - ((-k) % n);
}

int32_t NormalEdgeMode(int32_t edgeMode) {
  return (edgeMode >= kWrap && edgeMode <= kTransparent) ? edgeMode : kWrap;
}

int64_t ResolveLinePosition(int32_t edgeMode, int32_t length, int64_t position) {
  if (length == 1) {
    return 0;
  }
  switch (NormalEdgeMode(edgeMode)) {
    case kMirror: {
      const int64_t period = 2 * static_cast<int64_t>(length) - 2;
      const int64_t r = position % period;
      return r <= length - 1 ? r : period - r;
    }
    case kRepeatLast:
      return std::min<int64_t>(position, length - 1);
    default:
      return position % length;
  }
}

int64_t ResolveLayerPosition(int32_t edgeMode, int32_t length, int64_t position) {
  const int64_t period = static_cast<int64_t>(EdgePeriod(edgeMode, length)) * kOne;
  switch (NormalEdgeMode(edgeMode)) {
    case kMirror: {
      const int64_t r = position % period;
      return r < period / 2 ? r : period - r;
    }
    case kRepeatLast:
      return std::min(position, period);
    default:
      return position % period;
  }
}

int32_t FeatherLength(double transparencyFeather, int32_t length) {
  return static_cast<int32_t>(transparencyFeather / 100.0 * static_cast<double>(length));
}

double EdgeFade(int32_t edgeMode, int32_t length, int32_t feather, int64_t position) {
  if (NormalEdgeMode(edgeMode) != kTransparent) {
    return 1.0;
  }
  const int64_t R = length - position;
  if (R <= 0) {
    return 0.0;
  }
  if (R < feather) {
    return static_cast<double>(static_cast<float>(R) / static_cast<float>(feather));
  }
  return 1.0;
}

// ---- Image shift ---------------------------------------------------------------

Shift ImageShift(const Settings& settings, int32_t length, int32_t layerLength) {
  Shift s{};
  const double I = settings.intensity / 100.0;
  s.scaledPhase = static_cast<int32_t>(static_cast<double>(settings.imageShiftPhase) * I);
  const float t = static_cast<float>(s.scaledPhase) / kTurn;
  s.shiftPixels = static_cast<int32_t>(static_cast<float>(length) * t);
  s.layerShiftPixels = static_cast<int32_t>(static_cast<float>(layerLength) * t);
  s.imageShiftOffset = static_cast<int32_t>(ReducePeriod(s.shiftPixels, length));
  s.layerShiftOffset = static_cast<int32_t>(ReducePeriod(s.layerShiftPixels, layerLength));
  s.mirrorTurn = 0;
  if (NormalEdgeMode(settings.edgeMode) == kMirror) {
    const auto q = static_cast<int32_t>(std::trunc(t));
    s.mirrorTurn = q % 2;
    if (s.shiftPixels < 0) {
      s.mirrorTurn = std::abs(s.mirrorTurn) ^ 1;
    }
  }
  s.colourStart =
      static_cast<int64_t>(s.imageShiftOffset) + static_cast<int64_t>(s.mirrorTurn) * length;
  s.layerStart = (static_cast<int64_t>(s.layerShiftOffset) +
                  static_cast<int64_t>(s.mirrorTurn) * layerLength) *
                 kOne;
  return s;
}

// ---- Shading -------------------------------------------------------------------

std::vector<double> ShadingTable(const Settings& settings, float scale) {
  const int32_t S = settings.shadingIntervalSize == 0 ? 8 : settings.shadingIntervalSize;
  int32_t N = static_cast<int32_t>(static_cast<double>(S) * static_cast<double>(scale));
  N = std::max(N, 2);
  N = std::min(N, 256);
  const float phaseTurns = static_cast<float>(settings.shadingIntervalPhase) / kTurn;
  const auto k = static_cast<int32_t>(phaseTurns * static_cast<float>(N));
  const auto r = static_cast<int32_t>(ReducePeriod(k, N));
  const double I = settings.intensity / 100.0;
  const double o = settings.shadingOpacity / 100.0;
  const double b = (o - 1.0) * I + 1.0;
  const double w = 1.0 - b;
  std::vector<double> table(static_cast<std::size_t>(N));
  for (int32_t i = 0; i < N; ++i) {
    const double t = static_cast<double>(i) / static_cast<double>(N);
    double v = 1.0;
    switch (settings.shadingMode) {
      case 1:
        v = std::cos((t + t) * kPi) * 0.5 + 0.5;
        break;
      case 2:
        v = t < 0.5 ? t + t : 1.0 - ((t - 0.5) + (t - 0.5));
        break;
      case 3:
        v = t;
        break;
      case 4:
        v = 1.0 - t;
        break;
      case 5:
        if (N == 2) {
          v = i == 0 ? 1.0 : 0.0;
        } else if (N == 3) {
          v = i == 0 ? 1.0 : (i == 1 ? 0.5 : 0.0);
        } else {
          v = i == 0 ? 0.5 : (i == 1 ? 1.0 : (i == 2 ? 0.5 : 0.0));
        }
        break;
      default:
        v = 1.0;
        break;
    }
    table[static_cast<std::size_t>((i + r) % N)] = w * v + b;
  }
  return table;
}

// ---- Mapping quantities --------------------------------------------------------

int32_t StartCount(double startOffset, int32_t length) {
  const double rounded = std::round(startOffset / 100.0 * static_cast<double>(length));
  if (!(rounded >= 0.0)) {
    return 0;
  }
  if (rounded > static_cast<double>(length)) {
    return length;
  }
  return static_cast<int32_t>(rounded);
}

int64_t DistributionPixels(double distributionRange, int32_t length) {
  const double L = static_cast<double>(length);
  const auto r1 = static_cast<int64_t>(distributionRange * L);
  if (!(distributionRange > 1.0)) {
    return r1;
  }
  const int64_t square = static_cast<int64_t>(length) * length;
  const auto a =
      static_cast<int64_t>(std::pow(static_cast<double>(square), distributionRange - 1.0) + L);
  return static_cast<int64_t>(static_cast<double>(a - r1) * (distributionRange - 1.0) +
                              static_cast<double>(r1));
}

double Distribute(int32_t mode, int64_t range, int64_t step, double length) {
  double S = length;
  const auto j = static_cast<double>(step);
  const auto R = static_cast<double>(range);
  switch (mode) {
    case 0:
      if (step > range) {
        S = 1.0;
      }
      break;
    case 1:
      if (step < range) {
        S = ((S - 1.0) * j) / R + 1.0;
      }
      break;
    case 2:
      if (step < range) {
        S = S + ((1.0 - S) * j) / R;
      } else {
        S = 1.0;
      }
      break;
    default:
      break;
  }
  return S;
}

LayerGeometry LayerSampling(int32_t width, int32_t height, int32_t layerWidth, int32_t layerHeight,
                            int32_t originX, int32_t originY) {
  LayerGeometry g{};
  const bool inside = originX >= 0 && originY >= 0 && layerWidth >= width &&
                      layerHeight >= height && width + originX <= layerWidth &&
                      height + originY <= layerHeight;
  if (inside) {
    g.layerOriginX = originX;
    g.layerOriginY = originY;
    g.xStep = (static_cast<int64_t>(layerWidth - originX) * kOne) / width;
    g.yStep = (static_cast<int64_t>(layerHeight - originY) * kOne) / height;
  } else {
    g.layerOriginX = 0;
    g.layerOriginY = 0;
    g.xStep = (static_cast<int64_t>(layerWidth) * kOne) / width;
    g.yStep = (static_cast<int64_t>(layerHeight) * kOne) / height;
  }
  return g;
}

template <typename T>
double MeasureIntensity(Variant variant, const T* pixel) {
  const auto a = static_cast<double>(pixel[0]);
  const auto red = static_cast<double>(pixel[1]);
  const auto green = static_cast<double>(pixel[2]);
  const auto blue = static_cast<double>(pixel[3]);
  double v = 0.0;
  auto channel = [](double c) {
    if constexpr (std::is_same_v<T, uint8_t>) {
      return c / 255.0;
    } else if constexpr (std::is_same_v<T, uint16_t>) {
      return c * 3.0517578125e-5;
    } else {
      return c;
    }
  };
  switch (variant) {
    case Variant::Luma:
    case Variant::LumaNoAlpha:
      if constexpr (std::is_same_v<T, uint8_t>) {
        v = (green + red + blue) / 765.0;
      } else if constexpr (std::is_same_v<T, uint16_t>) {
        v = (green + red + blue) / 98304.0;
      } else {
        v = (green + red + blue) / 3.0;
      }
      break;
    case Variant::Red:
      v = channel(red);
      break;
    case Variant::Green:
      v = channel(green);
      break;
    case Variant::Blue:
      v = channel(blue);
      break;
    case Variant::Alpha:
      return channel(a);
  }
  if constexpr (std::is_same_v<T, uint8_t>) {
    if (a < 255.0) {
      v = a * v / 255.0;
    }
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    if (a < 32768.0) {
      v = a * v * 3.0517578125e-5;
    }
  } else {
    if (a < 1.0) {
      v = v * a;
    }
  }
  return v;
}

int32_t CurveIndex(double intensity) {
  return static_cast<int32_t>(ClampUnit(intensity) * 1023.0);
}

// ---- Resampler -----------------------------------------------------------------

LineResampler::LineResampler(int32_t channels, int32_t lineLength)
    : channels_(channels),
      lineLength_(lineLength),
      carry_(static_cast<std::size_t>(channels), 0.0) {}

void LineResampler::CountCopiedPixel() {
  emitted_ += 1;
  linePosition_ += 1.0;
}

template <typename T>
T ConvertEmitted(double value) {
  if constexpr (std::is_same_v<T, float>) {
    return static_cast<float>(value);
  } else {
    double r = std::round(value);
    r = std::min(std::max(r, 0.0), White<T>());
    return static_cast<T>(r);
  }
}

template <typename T>
std::vector<T> ResampleLine(const std::vector<double>& values, const std::vector<double>& lengths,
                            int32_t outputLength) {
  std::vector<T> out(static_cast<std::size_t>(outputLength));
  LineResampler resampler(1, outputLength);
  const std::vector<double> one{1.0};
  for (std::size_t i = 0; !resampler.Full(); ++i) {
    const std::vector<double> c{values[i % values.size()]};
    const std::vector<double> n{values[(i + 1) % values.size()]};
    resampler.Step(lengths[i % lengths.size()], c, n, one, one,
                   [&](int32_t index, const std::vector<double>& v) {
                     out[static_cast<std::size_t>(index)] = ConvertEmitted<T>(v[0]);
                   });
  }
  return out;
}

// ---- Kernel --------------------------------------------------------------------

template <typename T>
void Kernel(Variant variant, const ConstImage<T>& input, const Image<T>& output,
            const Settings& settings, float scale, const ConstImage<T>* layer, int32_t originX,
            int32_t originY) {
  const int32_t width = output.width;
  const int32_t height = output.height;
  if (width <= 0 || height <= 0) {
    return;
  }
  const bool useLayer = layer != nullptr;

  const int32_t direction = NormalDirection(settings.direction);
  const bool rows = direction == kRight || direction == kLeft;
  const int32_t L = rows ? width : height;
  const int32_t lineCount = rows ? height : width;
  const int32_t Ls = useLayer ? (rows ? layer->width : layer->height) : L;
  const int32_t edgeMode = settings.edgeMode;

  const Shift shift = ImageShift(settings, L, Ls);
  const int32_t startCount = StartCount(settings.startOffset, L);
  const int64_t R = DistributionPixels(settings.distributionRange, L);
  const std::vector<double> shading = ShadingTable(settings, scale);
  const auto N = static_cast<int64_t>(shading.size());
  const int32_t F = FeatherLength(settings.transparencyFeather, L);
  const std::array<double, 1024> curve = CurveTable(settings);
  LayerGeometry geometry{};
  int64_t alongStep = 1;
  int64_t crossStep = 0;
  if (useLayer) {
    geometry = LayerSampling(width, height, layer->width, layer->height, originX, originY);
    alongStep = rows ? geometry.xStep : geometry.yStep;
    crossStep = rows ? geometry.yStep : geometry.xStep;
  }
  const bool sync = settings.imageShiftPhaseSync != 0;
  const bool rgbShading = settings.shadingChannels == 1;

  const std::vector<int> written = WrittenChannels(variant);
  const auto channelCount = static_cast<int32_t>(written.size());

  auto inputPixel = [&](int32_t line, int64_t resolved) {
    int32_t x = 0;
    int32_t y = 0;
    LinePixel(direction, L, line, resolved, x, y);
    return input.data + PixelIndex(input.stride, x, y);
  };
  auto outputPixel = [&](int32_t line, int32_t index) {
    int32_t x = 0;
    int32_t y = 0;
    LinePixel(direction, L, line, index, x, y);
    return output.data + PixelIndex(output.stride, x, y);
  };

  for (int32_t line = 0; line < lineCount; ++line) {
    int64_t colourOffset = shift.colourStart;
    int64_t nextOffset = colourOffset + 1;
    int64_t intensityOffset = 0;
    if (sync) {
      intensityOffset = useLayer ? ResolveLayerPosition(edgeMode, Ls, shift.layerStart)
                                 : ResolveLinePosition(edgeMode, L, shift.colourStart);
    }
    // Layer line: the cross coordinate of this line.
    int32_t layerCross = 0;
    if (useLayer) {
      const int32_t crossOrigin = rows ? geometry.layerOriginY : geometry.layerOriginX;
      const int32_t crossLimit = rows ? layer->height : layer->width;
      const int64_t cross = (static_cast<int64_t>(line) * crossStep + crossOrigin * kOne) / kOne;
      layerCross =
          static_cast<int32_t>(std::min<int64_t>(std::max<int64_t>(cross, 0), crossLimit - 1));
    }

    auto sampleIntensity = [&](int64_t position) {
      if (!useLayer) {
        const int64_t resolved = ResolveLinePosition(edgeMode, L, position);
        return MeasureIntensity<T>(variant, inputPixel(line, resolved));
      }
      const int64_t resolved = ResolveLayerPosition(edgeMode, Ls, position);
      int64_t pix = resolved / kOne;  // resolved positions are never negative
      pix = std::min<int64_t>(std::max<int64_t>(pix, 0), Ls - 1);
      int64_t column = 0;
      int64_t row = 0;
      switch (direction) {
        case kLeft:
          column = layer->width - 1 - pix;
          row = layerCross;
          break;
        case kDown:
          column = layerCross;
          row = geometry.layerOriginY + pix;
          break;
        case kUp:
          column = layerCross;
          row = layer->height - 1 - pix;
          break;
        default:
          column = geometry.layerOriginX + pix;
          row = layerCross;
          break;
      }
      column = std::min<int64_t>(std::max<int64_t>(column, 0), layer->width - 1);
      row = std::min<int64_t>(std::max<int64_t>(row, 0), layer->height - 1);
      const T* p = layer->data + row * layer->stride + column * 4;
      return MeasureIntensity<T>(variant, p);
    };

    LineResampler resampler(channelCount, L);

    // Start-offset copy.
    for (int32_t c = 0; c < startCount && !resampler.Full(); ++c) {
      const T* s = inputPixel(line, ResolveLinePosition(edgeMode, L, colourOffset));
      T* d = outputPixel(line, resampler.Emitted());
      for (const int ch : written) {
        if (ch == 0) {
          const double multiplier = 1.0 * EdgeFade(edgeMode, L, F, colourOffset);
          const double product = static_cast<double>(s[0]) * multiplier;
          if constexpr (std::is_same_v<T, float>) {
            d[0] = static_cast<float>(product);
          } else {
            d[0] = static_cast<T>(std::trunc(product));
          }
        } else {
          d[ch] = s[ch];
        }
      }
      colourOffset += 1;
      nextOffset += 1;
      intensityOffset += alongStep;
      resampler.CountCopiedPixel();
    }

    // Stretch loop.
    for (int64_t j = 0; !resampler.Full(); ++j) {
      const double v = sampleIntensity(intensityOffset);
      intensityOffset += alongStep;
      double S = curve[static_cast<std::size_t>(CurveIndex(v))];
      S = Distribute(settings.distributionMode, R, j, S);
      if (!(S > 0.0)) {
        S = 1.0;
      } else if (S < 0.005) {
        S = 0.005;  // the floor that bounds the steps per output pixel
      }

      const double shadeCurrent =
          shading[static_cast<std::size_t>((shift.imageShiftOffset + j) % N)];
      const double shadeNext =
          shading[static_cast<std::size_t>((shift.imageShiftOffset + j + 1) % N)];
      double colourCurrent = 1.0;
      double colourNext = 1.0;
      double alphaCurrent = 1.0;
      double alphaNext = 1.0;
      if (rgbShading) {
        colourCurrent = shadeCurrent;
        colourNext = shadeNext;
      } else {
        alphaCurrent = shadeCurrent;
        alphaNext = shadeNext;
      }
      if (NormalEdgeMode(edgeMode) == kTransparent) {
        alphaCurrent = alphaCurrent * EdgeFade(edgeMode, L, F, colourOffset);
        alphaNext = alphaNext * EdgeFade(edgeMode, L, F, nextOffset);
      }

      const T* cur = inputPixel(line, ResolveLinePosition(edgeMode, L, colourOffset));
      const T* nxt = inputPixel(line, ResolveLinePosition(edgeMode, L, nextOffset));
      std::vector<double> cv;
      std::vector<double> nv;
      std::vector<double> cm;
      std::vector<double> nm;
      for (const int ch : written) {
        cv.push_back(static_cast<double>(cur[ch]));
        nv.push_back(static_cast<double>(nxt[ch]));
        cm.push_back(ch == 0 ? alphaCurrent : colourCurrent);
        nm.push_back(ch == 0 ? alphaNext : colourNext);
      }
      resampler.Step(S, cv, nv, cm, nm, [&](int32_t index, const std::vector<double>& values) {
        T* d = outputPixel(line, index);
        for (std::size_t c = 0; c < written.size(); ++c) {
          d[written[c]] = ConvertEmitted<T>(values[c]);
        }
      });
      colourOffset += 1;
      nextOffset += 1;
    }
  }
}

// ---- Dispatch ------------------------------------------------------------------

template <typename T>
void Dispatch(const ConstImage<T>& input, const Image<T>& output, const Settings& settings,
              float scale, const ConstImage<T>* layer, int32_t originX, int32_t originY) {
  const int32_t mode = settings.channelMode;
  const int32_t copyRows = std::min(input.height, output.height);
  const int32_t copyWidth = std::min(input.width, output.width);
  if ((mode >= 2 && mode <= 5) || settings.intensity == 0.0) {
    for (int32_t y = 0; y < copyRows; ++y) {
      std::memcpy(output.data + PixelIndex(output.stride, 0, y),
                  input.data + PixelIndex(input.stride, 0, y),
                  static_cast<std::size_t>(copyWidth) * 4 * sizeof(T));
    }
  }
  if (settings.intensity == 0.0) {
    return;
  }
  if (mode == 6 || mode == 7) {
    for (int32_t y = 0; y < copyRows; ++y) {
      for (int32_t x = 0; x < copyWidth; ++x) {
        output.data[PixelIndex(output.stride, x, y)] = input.data[PixelIndex(input.stride, x, y)];
      }
    }
  }
  const ConstImage<T>* used = nullptr;
  if (layer != nullptr && layer->data != nullptr && layer->width > 0 && layer->height > 0) {
    used = layer;
  }
  const int32_t ox = used != nullptr ? originX : 0;
  const int32_t oy = used != nullptr ? originY : 0;
  std::vector<Variant> sequence;
  switch (mode) {
    case 0:
      sequence = {Variant::Luma};
      break;
    case 1:
      sequence = {Variant::Alpha, Variant::Red, Variant::Green, Variant::Blue};
      break;
    case 2:
      sequence = {Variant::Red};
      break;
    case 3:
      sequence = {Variant::Green};
      break;
    case 4:
      sequence = {Variant::Blue};
      break;
    case 5:
      sequence = {Variant::Alpha};
      break;
    case 6:
      sequence = {Variant::LumaNoAlpha};
      break;
    case 7:
      sequence = {Variant::Red, Variant::Green, Variant::Blue};
      break;
    default:
      return;
  }
  for (const Variant variant : sequence) {
    const Settings copy = settings;  // every kernel starts from the frame's values
    Kernel<T>(variant, input, output, copy, scale, used, ox, oy);
  }
}

#define MORVANE_REFERENCE_INSTANTIATE(T)                                                          \
  template void Dispatch<T>(const ConstImage<T>&, const Image<T>&, const Settings&, float,        \
                            const ConstImage<T>*, int32_t, int32_t);                              \
  template void Kernel<T>(Variant, const ConstImage<T>&, const Image<T>&, const Settings&, float, \
                          const ConstImage<T>*, int32_t, int32_t);                                \
  template double MeasureIntensity<T>(Variant, const T*);                                         \
  template std::vector<T> ResampleLine<T>(const std::vector<double>&, const std::vector<double>&, \
                                          int32_t);                                               \
  template T ConvertEmitted<T>(double);

MORVANE_REFERENCE_INSTANTIATE(uint8_t)
MORVANE_REFERENCE_INSTANTIATE(uint16_t)
MORVANE_REFERENCE_INSTANTIATE(float)

#undef MORVANE_REFERENCE_INSTANTIATE

}  // namespace morvane::reference
