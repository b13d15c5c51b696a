// Frame numbers in file names and frame ranges.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace morvane::cli {

// A file name that may carry one frame number placeholder: a run of '#'
// (the frame zero-padded to the run's length, "####" -> 0007) or a printf
// field "%d" / "%0Nd" (padded to N digits).
class FramePattern {
 public:
  // Throws UsageError when the text holds more than one placeholder.
  explicit FramePattern(std::string text);

  bool HasPlaceholder() const { return width_ >= 0; }
  // The file name of `frame`; the text unchanged when there is no placeholder.
  std::string Expand(int32_t frame) const;
  const std::string& text() const { return text_; }

 private:
  std::string text_;
  std::size_t begin_ = 0;  // placeholder position in text_
  std::size_t length_ = 0;
  int width_ = -1;  // zero-padding width; -1 without placeholder
};

struct FrameRange {
  int32_t first = 0;
  int32_t last = 0;
  int32_t count() const { return last - first + 1; }
};

// "A-B" or "A" with 0 <= A <= B. Throws UsageError.
FrameRange ParseFrameRange(std::string_view text);

}  // namespace morvane::cli
