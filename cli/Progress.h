// Progress of a render on stderr: a bar redrawn in place on a terminal,
// otherwise one line per finished frame (for logs and render farms).
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <string>

namespace morvane::cli {

class Progress {
 public:
  Progress(std::ostream& stream, bool terminal, int32_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Called from any render thread once a frame's file is in place.
  void FrameDone(int32_t frame, const std::string& file, double seconds);
  // Ends the bar's line; call once when rendering stops.
  void Finish();

 private:
  std::ostream& stream_;
  const bool terminal_;
  const int32_t total_;
  int32_t done_ = 0;
  bool barDrawn_ = false;
  std::mutex mutex_;
};

// True when `fd` is a terminal.
bool IsTerminal(int fd);

}  // namespace morvane::cli
