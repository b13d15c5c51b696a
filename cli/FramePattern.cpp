#include "cli/FramePattern.h"

#include <charconv>

#include "cli/Errors.h"

namespace morvane::cli {

namespace {

struct Placeholder {
  std::size_t begin;
  std::size_t length;
  int width;
};

// The placeholder starting at `i`, if any.
std::optional<Placeholder> PlaceholderAt(const std::string& text, std::size_t i) {
  if (text[i] == '#') {
    std::size_t end = i;
    while (end < text.size() && text[end] == '#')
      ++end;
    return Placeholder{i, end - i, int(end - i)};
  }
  if (text[i] != '%') return std::nullopt;
  std::size_t j = i + 1;
  int width = 0;
  if (j < text.size() && text[j] == '0') {
    ++j;
    const std::size_t digits = j;
    while (j < text.size() && text[j] >= '0' && text[j] <= '9')
      width = width * 10 + (text[j++] - '0');
    if (j == digits) return std::nullopt;
  }
  if (j < text.size() && text[j] == 'd') return Placeholder{i, j + 1 - i, width};
  return std::nullopt;
}

std::optional<int32_t> ParseCount(std::string_view text) {
  int32_t value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size() || value < 0) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

FramePattern::FramePattern(std::string text) : text_(std::move(text)) {
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const auto found = PlaceholderAt(text_, i);
    if (!found) continue;
    if (width_ >= 0) {
      throw UsageError("'" + text_ + "' holds more than one frame number placeholder");
    }
    begin_ = found->begin;
    length_ = found->length;
    width_ = found->width;
    i += found->length - 1;
  }
}

std::string FramePattern::Expand(int32_t frame) const {
  if (!HasPlaceholder()) return text_;
  std::string number = std::to_string(frame < 0 ? -frame : frame);
  if (int(number.size()) < width_) number.insert(0, std::size_t(width_) - number.size(), '0');
  if (frame < 0) number.insert(0, 1, '-');
  return text_.substr(0, begin_) + number + text_.substr(begin_ + length_);
}

FrameRange ParseFrameRange(std::string_view text) {
  const std::size_t dash = text.find('-');
  const auto first = ParseCount(text.substr(0, dash));
  const auto last = dash == std::string_view::npos ? first : ParseCount(text.substr(dash + 1));
  if (!first || !last || *last < *first) {
    throw UsageError("--frames: '" + std::string(text) +
                     "' is not a frame range A-B with 0 <= A <= B");
  }
  return {*first, *last};
}

}  // namespace morvane::cli
