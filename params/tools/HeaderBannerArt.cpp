#include "params/tools/HeaderBannerArt.h"

#include <cmath>
#include <cstddef>

namespace morvane {
namespace {

struct Rgb {
  double r, g, b;
};

// 5 x 7 glyphs of the letters of the effect's name, one string per row, '#' for ink.
struct Glyph {
  char letter;
  const char* rows[7];
};

constexpr Glyph kGlyphs[] = {
    {'M', {"#...#", "##.##", "#.#.#", "#.#.#", "#...#", "#...#", "#...#"}},
    {'O', {".###.", "#...#", "#...#", "#...#", "#...#", "#...#", ".###."}},
    {'R', {"####.", "#...#", "#...#", "####.", "#.#..", "#..#.", "#...#"}},
    {'V', {"#...#", "#...#", "#...#", "#...#", "#...#", ".#.#.", "..#.."}},
    {'A', {".###.", "#...#", "#...#", "#####", "#...#", "#...#", "#...#"}},
    {'N', {"#...#", "##..#", "#.#.#", "#..##", "#...#", "#...#", "#...#"}},
    {'E', {"#####", "#....", "#....", "####.", "#....", "#....", "#####"}},
};

constexpr char kTitle[] = "MORVANE";
constexpr int32_t kScale = 2;  // each glyph cell is 2 x 2 pixels
constexpr int32_t kTextLeft = 8;
constexpr int32_t kTextTop = 2;
constexpr int32_t kGlyphAdvance = 6 * kScale;

constexpr Rgb kBackgroundLeft{44.0, 48.0, 58.0};
constexpr Rgb kBackgroundRight{22.0, 24.0, 29.0};
constexpr Rgb kInk{236.0, 196.0, 112.0};

const Glyph* FindGlyph(char letter) {
  for (const Glyph& glyph : kGlyphs) {
    if (glyph.letter == letter) return &glyph;
  }
  return nullptr;
}

Rgb Mix(const Rgb& a, const Rgb& b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

class Canvas {
 public:
  Canvas() : rgb_(static_cast<std::size_t>(kHeaderBannerWidth * kHeaderBannerHeight)) {}
  Rgb& At(int32_t x, int32_t y) {
    return rgb_[static_cast<std::size_t>(y * kHeaderBannerWidth + x)];
  }

  std::vector<uint8_t> ToBgra() const {
    std::vector<uint8_t> bytes;
    bytes.reserve(rgb_.size() * 4);
    for (const Rgb& c : rgb_) {
      bytes.push_back(ToByte(c.b));
      bytes.push_back(ToByte(c.g));
      bytes.push_back(ToByte(c.r));
      bytes.push_back(255);  // the banner is opaque
    }
    return bytes;
  }

 private:
  static uint8_t ToByte(double v) {
    const double rounded = std::round(v);
    return static_cast<uint8_t>(rounded < 0.0 ? 0.0 : rounded > 255.0 ? 255.0 : rounded);
  }
  std::vector<Rgb> rgb_;
};

void PaintBackground(Canvas& canvas) {
  for (int32_t y = 0; y < kHeaderBannerHeight; ++y) {
    for (int32_t x = 0; x < kHeaderBannerWidth; ++x) {
      const double t = static_cast<double>(x) / (kHeaderBannerWidth - 1);
      canvas.At(x, y) = Mix(kBackgroundLeft, kBackgroundRight, t);
    }
  }
  // A thin accent line along the bottom edge.
  for (int32_t x = 0; x < kHeaderBannerWidth; ++x) {
    canvas.At(x, kHeaderBannerHeight - 1) = Mix(canvas.At(x, kHeaderBannerHeight - 1), kInk, 0.45);
  }
}

// Draws the name and returns the first column right of it.
int32_t PaintTitle(Canvas& canvas) {
  int32_t left = kTextLeft;
  for (const char* letter = kTitle; *letter != '\0'; ++letter) {
    const Glyph* glyph = FindGlyph(*letter);
    for (int32_t row = 0; glyph != nullptr && row < 7; ++row) {
      for (int32_t col = 0; col < 5; ++col) {
        if (glyph->rows[row][col] != '#') continue;
        for (int32_t dy = 0; dy < kScale; ++dy) {
          for (int32_t dx = 0; dx < kScale; ++dx) {
            canvas.At(left + col * kScale + dx, kTextTop + row * kScale + dy) = kInk;
          }
        }
      }
    }
    left += kGlyphAdvance;
  }
  return left;
}

// Streaks trailing off to the right of the name, each text row pulled out to its own length,
// fading into the background: what the effect does to an image.
void PaintStreaks(Canvas& canvas, int32_t start) {
  constexpr int32_t kRows = 7 * kScale;
  for (int32_t row = 0; row < kRows; ++row) {
    const double wave = 0.5 + 0.5 * std::sin(static_cast<double>(row) * 0.9 + 0.4);
    const int32_t length = 60 + static_cast<int32_t>(wave * 150.0);
    const int32_t y = kTextTop + row;
    for (int32_t i = 0; i < length && start + i < kHeaderBannerWidth; ++i) {
      const double fade = 1.0 - static_cast<double>(i) / length;
      Rgb& pixel = canvas.At(start + i, y);
      pixel = Mix(pixel, kInk, 0.85 * fade * fade);
    }
  }
}

}  // namespace

std::vector<uint8_t> PaintHeaderBanner() {
  Canvas canvas;
  PaintBackground(canvas);
  const int32_t right = PaintTitle(canvas);
  PaintStreaks(canvas, right + 4);
  return canvas.ToBgra();
}

}  // namespace morvane
