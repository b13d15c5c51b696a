#include "cli/FrameRenderer.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <exception>
#include <filesystem>
#include <mutex>
#include <thread>

#include "cli/Downsample.h"
#include "cli/Errors.h"
#include "cli/ImageFile.h"

namespace morvane::cli {

namespace fs = std::filesystem;

namespace {

bool SameFile(const fs::path& a, const fs::path& b) {
  std::error_code ec;
  return fs::equivalent(a, b, ec) && !ec;
}

// Pixels of the "Intensity Source" file; read once when its name has no frame
// placeholder.
class IntensitySource {
 public:
  explicit IntensitySource(const std::optional<FramePattern>& pattern) : pattern_(pattern) {
    if (pattern_ && !pattern_->HasPlaceholder()) shared_ = ReadImageFile(pattern_->text());
  }
  std::optional<ArgbImage> ForFrame(int32_t frame, Depth depth, int downsample) const {
    if (!pattern_) return std::nullopt;
    const FileImage file = shared_ ? *shared_ : ReadImageFile(pattern_->Expand(frame));
    return Downsample(FileToEffect(file, depth), downsample);
  }

 private:
  const std::optional<FramePattern>& pattern_;
  std::optional<FileImage> shared_;
};

void RenderOneFrame(RenderBackend& backend, const RenderOptions& options,
                    const IntensitySource& intensity, int32_t frame, Progress& progress) {
  const auto started = std::chrono::steady_clock::now();
  const fs::path in = options.input.Expand(frame);
  const fs::path out = options.output.Expand(frame);
  if (!options.overwrite) {
    if (SameFile(in, out)) {
      throw UsageError("refusing to overwrite the input '" + in.string() +
                       "' (pass --overwrite to allow it)");
    }
    if (options.intensitySource && SameFile(options.intensitySource->Expand(frame), out)) {
      throw UsageError("refusing to overwrite the intensity source '" + out.string() +
                       "' (pass --overwrite to allow it)");
    }
  }
  const FileImage file = ReadImageFile(in);
  const Depth depth = options.depth.value_or(NaturalDepth(file));
  const ArgbImage input = Downsample(FileToEffect(file, depth), options.downsample);
  const std::optional<ArgbImage> layer = intensity.ForFrame(frame, depth, options.downsample);

  if (options.region) {
    const Rect& r = *options.region;
    if (std::int64_t{r.x} + r.width > input.width() ||
        std::int64_t{r.y} + r.height > input.height()) {
      throw UsageError("--region " + std::to_string(r.x) + "," + std::to_string(r.y) + "," +
                       std::to_string(r.width) + "," + std::to_string(r.height) +
                       " does not lie inside '" + in.string() + "' (" +
                       std::to_string(input.width()) + "x" + std::to_string(input.height()) +
                       (options.downsample > 1 ? " after --downsample" : "") + ")");
    }
  }

  FrameRequest request;
  request.input = &input;
  request.intensitySource = layer ? &*layer : nullptr;
  request.region = options.region;
  request.downsample = options.downsample;
  request.fullWidth = file.width();
  request.frame = frame;
  const ArgbImage result = backend.Render(request);

  WriteImageFile(out, result, options.outDepth.value_or(depth));
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - started;
  progress.FrameDone(frame, out.string(), seconds.count());
}

}  // namespace

FrameRange PlanFrames(const RenderOptions& options, HostProfile profile) {
  if (options.input.HasPlaceholder() && !options.frames) {
    throw UsageError("'" + options.input.text() +
                     "' holds a frame number placeholder: give the frames with --frames A-B");
  }
  const FrameRange range = options.frames.value_or(FrameRange{0, 0});
  if (range.count() > 1 && !options.output.HasPlaceholder()) {
    throw UsageError("'" + options.output.text() + "' needs a frame number placeholder (# or " +
                     "%04d) to hold " + std::to_string(range.count()) + " frames");
  }
  if (options.region && profile == HostProfile::Premiere) {
    throw UsageError(
        "--region needs a host that renders in two phases (ae, ae-13.23, ae-13.8); "
        "premiere renders whole frames");
  }
  return range;
}

void RenderFrames(RenderBackend& backend, const RenderOptions& options, Progress& progress) {
  const FrameRange range = PlanFrames(options, backend.Profile());
  CheckWritableFormat(options.output.Expand(range.first));
  const IntensitySource intensity(options.intensitySource);
  backend.SetControls(options.controls);

  std::atomic<int32_t> next{range.first};
  std::atomic<bool> stop{false};
  std::exception_ptr firstError;
  std::mutex errorMutex;
  auto work = [&] {
    while (!stop.load()) {
      const int32_t frame = next.fetch_add(1);
      if (frame > range.last) return;
      try {
        RenderOneFrame(backend, options, intensity, frame, progress);
      } catch (...) {
        const std::lock_guard lock(errorMutex);
        if (!firstError) firstError = std::current_exception();
        stop.store(true);
      }
    }
  };
  const int threads = std::clamp(options.jobs, 1, range.count());
  if (threads == 1) {
    work();
  } else {
    std::vector<std::jthread> pool;
    for (int i = 0; i < threads; ++i)
      pool.emplace_back(work);
  }
  progress.Finish();
  if (firstError) std::rethrow_exception(firstError);
}

Rect ParseRegion(std::string_view text) {
  int32_t values[4] = {0, 0, 0, 0};
  std::string_view rest = text;
  bool ok = true;
  for (int i = 0; i < 4 && ok; ++i) {
    const std::size_t comma = rest.find(',');
    const std::string_view part = rest.substr(0, comma);
    const auto [end, ec] = std::from_chars(part.data(), part.data() + part.size(), values[i]);
    ok = !part.empty() && ec == std::errc() && end == part.data() + part.size() &&
         (comma == std::string_view::npos) == (i == 3);
    if (comma != std::string_view::npos) rest.remove_prefix(comma + 1);
  }
  if (!ok || values[0] < 0 || values[1] < 0 || values[2] < 1 || values[3] < 1) {
    throw UsageError("--region: '" + std::string(text) +
                     "' is not X,Y,W,H with X, Y >= 0 and W, H >= 1");
  }
  return {values[0], values[1], values[2], values[3]};
}

}  // namespace morvane::cli
