#include "params/CurveGraph.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>

#include "params/ParamCheckout.h"
#include "stretch/StretchMath.h"

namespace morvane {
namespace {

// Canvas bytes: empty or ink. The filter's weights add up to 32, so a fully inked
// neighbourhood sums to 7 * 32 = 224 and every sum fits the grey ramp.
constexpr uint8_t kInk = 7;

// Weights of the 4 x 4 neighbourhood that becomes one picture pixel.
constexpr int32_t kFilter[4][4] = {
    {1, 2, 2, 1},
    {2, 3, 3, 2},
    {2, 3, 3, 2},
    {1, 2, 2, 1},
};

// Picture pixels computed from the canvas; the last two rows and columns stay transparent.
constexpr int32_t kFilteredSize = 48;

constexpr float kCurveAmplitude = static_cast<float>(kCurveGraphColumns - 1);

struct Canvas {
  uint8_t bytes[kCurveGraphCanvasSize][kCurveGraphCanvasSize];
};

std::array<int32_t, kCurveGraphColumns> CurveHeights(CurveShape shape, PF_Fixed phase,
                                                     float smoothness) {
  const int32_t offset = CurveGraphColumnOffset(phase);
  std::array<int32_t, kCurveGraphColumns> heights{};
  for (int32_t i = 0; i < kCurveGraphColumns; ++i) {
    const float value = SmoothedCurveValueF(shape, i, kCurveGraphColumns, kCurveAmplitude, 0.0f,
                                            smoothness, CurveFlags::None);
    // The shapes stay within 0 ... 95; the clamp keeps any other value's ink on the canvas.
    heights[(i + offset) % kCurveGraphColumns] =
        std::clamp(TruncTo<int32_t>(std::round(value)), 0, kCurveGraphColumns - 1);
  }
  return heights;
}

void InkColumn(Canvas& canvas, int32_t column, int32_t firstRow, int32_t lastRow) {
  for (int32_t row = firstRow; row <= lastRow; ++row) {
    canvas.bytes[row][column] = kInk;
  }
}

void InkCurve(Canvas& canvas, const std::array<int32_t, kCurveGraphColumns>& heights) {
  for (int32_t j = 0; j < kCurveGraphColumns; ++j) {
    const int32_t h = heights[j];
    const int32_t c = j + 2;
    InkColumn(canvas, c, 97 - h, 98 - h);
    if (j > 0) {
      // Joins the point to the previous column's, one row above the points' rows.
      const int32_t p = heights[j - 1];
      InkColumn(canvas, c - 1, 96 - std::max(p, h), 97 - std::min(p, h));
    }
  }
}

void FilterDown(const Canvas& canvas, uint8_t* picture) {
  const std::array<uint8_t, 256> ramp = CurveGraphGreyRamp();
  std::memset(picture, 0, kCurveGraphPictureBytes);
  for (int32_t y = 0; y < kFilteredSize; ++y) {
    for (int32_t x = 0; x < kFilteredSize; ++x) {
      int32_t sum = 0;
      for (int32_t r = 0; r < 4; ++r) {
        for (int32_t c = 0; c < 4; ++c) {
          sum += kFilter[r][c] * canvas.bytes[2 * y + 1 + r][2 * x + 1 + c];
        }
      }
      uint8_t* pixel = picture + (y * kCurveGraphSize + x) * 4;
      std::memset(pixel, ramp[static_cast<std::size_t>(sum)], 4);
    }
  }
}

}  // namespace

int32_t CurveGraphColumnOffset(PF_Fixed phase) {
  const float turns = static_cast<float>(phase) / static_cast<float>(kFullTurn);
  const int32_t k = TruncTo<int32_t>(turns * static_cast<float>(kCurveGraphColumns));
  return static_cast<int32_t>(ReduceIntoPeriod(k, kCurveGraphColumns));
}

std::array<uint8_t, 256> CurveGraphGreyRamp() {
  std::array<uint8_t, 256> ramp{};
  for (int32_t s = 0; s < 256; ++s) {
    const float a = static_cast<float>(s) / 255.0f;
    const float t = static_cast<float>(static_cast<double>(a) * 1.570796326795);
    ramp[static_cast<std::size_t>(s)] =
        static_cast<uint8_t>(64 + static_cast<int32_t>(159.0f * std::sin(t)));
  }
  return ramp;
}

int32_t RenderCurveGraphPicture(uint8_t* picture, CurveShape shape, PF_Fixed phase,
                                float smoothness) {
  const std::unique_ptr<Canvas> canvas(new (std::nothrow) Canvas{});
  if (canvas == nullptr) return 0;
  InkCurve(*canvas, CurveHeights(shape, phase, smoothness));
  FilterDown(*canvas, picture);
  return 1;
}

int32_t RenderCurveGraph(uint8_t* picture, PF_InData* in_data, PF_ParamDef* params[],
                         const CustomControl& control) {
  PF_ParamDef buffer;
  A_long popup = 0;
  {
    const CheckedOutParam shape(in_data, params, control.shape, buffer);
    popup = shape->u.pd.value;
  }
  PF_Fixed phase = 0;
  {
    const CheckedOutParam angle(in_data, params, control.phase, buffer);
    phase = angle->u.ad.value;
  }
  float smoothness = 0.0f;
  {
    const CheckedOutParam slider(in_data, params, control.smoothness, buffer);
    smoothness = static_cast<float>(slider->u.fs_d.value);
  }
  return RenderCurveGraphPicture(picture, static_cast<CurveShape>(popup - 1), phase, smoothness);
}

}  // namespace morvane
