#include "cli/Progress.h"

#include <unistd.h>

#include <cstdio>
#include <ostream>

namespace morvane::cli {

namespace {
constexpr int kBarWidth = 30;
}

Progress::Progress(std::ostream& stream, bool terminal, int32_t total)
    : stream_(stream), terminal_(terminal), total_(total) {}

void Progress::FrameDone(int32_t frame, const std::string& file, double seconds) {
  const std::lock_guard lock(mutex_);
  ++done_;
  char timing[32];
  std::snprintf(timing, sizeof timing, "%.2f s", seconds);
  if (!terminal_) {
    stream_ << "frame " << frame << " (" << done_ << "/" << total_ << "): " << file << ", "
            << timing << "\n"
            << std::flush;
    return;
  }
  const int filled = total_ > 0 ? int(std::int64_t{kBarWidth} * done_ / total_) : kBarWidth;
  std::string bar(std::size_t(filled), '#');
  bar.resize(kBarWidth, '.');
  stream_ << "\r[" << bar << "] " << done_ << "/" << total_ << "  frame " << frame << "\x1b[K"
          << std::flush;
  barDrawn_ = true;
}

void Progress::Finish() {
  const std::lock_guard lock(mutex_);
  if (barDrawn_) stream_ << "\n" << std::flush;
  barDrawn_ = false;
}

bool IsTerminal(int fd) {
  return ::isatty(fd) == 1;
}

}  // namespace morvane::cli
