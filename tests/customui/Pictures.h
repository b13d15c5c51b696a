// The pictures the custom-drawn controls show, kept as digests of their bytes. Each one was
// accepted once by looking at it zoomed; any change to a picture changes its digest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "stretch/StretchCurve.h"

namespace morvane::testing {

// FNV-1a over the bytes.
inline uint64_t Digest(const uint8_t* bytes, std::size_t size) {
  uint64_t hash = 0xCBF29CE484222325u;
  for (std::size_t i = 0; i < size; ++i)
    hash = (hash ^ bytes[i]) * 0x100000001B3u;
  return hash;
}
inline uint64_t Digest(const std::vector<uint8_t>& bytes) {
  return Digest(bytes.data(), bytes.size());
}

// The 50 x 50 curve graph (straight BGRA) for the three curve controls.
struct CurveGraphLook {
  CurveShape shape;
  const char* item;  // the "Stretch Curve" item
  double degrees;    // "Curve Phase"
  float smoothness;  // "Curve Smoothness"
  uint64_t digest;
};

inline constexpr CurveGraphLook kCurveGraphs[] = {
    {CurveShape::LinearRampUp, "Linear Ramp Up", 0.0, 0.0f, 0x1456AAA657956195},
    {CurveShape::LinearRampUp, "Linear Ramp Up", 90.0, 0.0f, 0x85E0EBEA337FD871},
    {CurveShape::LinearRampUp, "Linear Ramp Up", 0.0, 2.0f, 0x8A8DB96A85DF5621},
    {CurveShape::LinearRampUp, "Linear Ramp Up", 0.0, 3.0f, 0x7463103928C701FD},
    {CurveShape::LinearRampDown, "Linear Ramp Down", 0.0, 0.0f, 0x70B5281943006B79},
    {CurveShape::TriangleWave, "Triangle Wave", 0.0, 0.0f, 0x6BE3D03C39D233E9},
    {CurveShape::TriangleWave, "Triangle Wave", -3.75, 0.0f, 0x73E191CAF7D56985},
    {CurveShape::TriangleWave, "Triangle Wave", -3.75, 1.5f, 0xDE9720A2F9363619},
    {CurveShape::SineWave, "Sine Wave", 90.0, 3.5f, 0x4CFB3680B8EE82C1},
    {CurveShape::SineWave, "Sine Wave", 450.0, 3.5f, 0x4CFB3680B8EE82C1},
    {CurveShape::ExpUp, "Exp Up", 45.0, 16.0f, 0xB7C52C1F5CF99025},
    {CurveShape::ExpDown, "Exp Down", -200.0, 0.0f, 0x9F575C1D75DB161D},
    {CurveShape::ExpDown, "Exp Down", -3.75, 4.0f, 0xB1936374612A1E89},
};

// The 320 x 17 header banner (straight BGRA).
inline constexpr uint64_t kHeaderBanner = 0x6A5480CA5E96AF97;

}  // namespace morvane::testing
