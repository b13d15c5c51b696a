// Many frames rendered by DispatchStretch on four threads at once, each with its own record,
// depth and intensity layer, against the same frames rendered one after another. The kernels
// share no state, so the results must be identical byte for byte; under ThreadSanitizer the run
// also shows that no two renders touch the same memory unsynchronised.
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <random>
#include <thread>
#include <vector>

#include "render/DispatchStretch.h"
#include "tests/stress/StressImages.h"

namespace morvane::stress {
namespace {

constexpr int kThreads = 4;
constexpr int kJobs = 96;

// A record anywhere inside the controls' ranges.
StretchRenderRecord RandomRecord(std::mt19937& rng) {
  const auto real = [&](double lo, double hi) {
    return std::uniform_real_distribution<double>(lo, hi)(rng);
  };
  const auto whole = [&](int32_t lo, int32_t hi) {
    return std::uniform_int_distribution<int32_t>(lo, hi)(rng);
  };
  StretchRenderRecord r{};
  r.channelMode = whole(0, 7);
  r.intensity = whole(0, 9) == 0 ? 0.0 : real(1.0, 100.0);
  r.direction = whole(0, 3);
  r.stretchAmount = real(0.0, 8.0);
  r.pixelSize = real(0.3, 4.0);
  r.startOffset = real(0.0, 60.0);
  r.curveShape = whole(0, 5);
  r.curvePhase = whole(-2 * 23592960, 2 * 23592960);
  r.curveSmoothness = real(0.0, 6.0);
  r.distributionMode = whole(0, 2);
  r.distributionRange = real(0.0, 2.0);
  r.imageShiftPhase = whole(-23592960, 23592960);
  r.imageShiftPhaseSync = whole(0, 1);
  r.shadingMode = whole(0, 5);
  r.shadingIntervalSize = whole(2, 40);
  r.shadingIntervalPhase = whole(-23592960, 23592960);
  r.shadingOpacity = real(0.0, 100.0);
  r.shadingChannels = whole(0, 1);
  r.edgeMode = whole(0, 3);
  r.transparencyFeather = real(0.0, 100.0);
  return r;
}

struct Job {
  PixelDepth depth;
  StretchRenderRecord record;
  bool withLayer;
  float scale;
  int32_t originX;
  int32_t originY;
};

class StressDispatchConcurrency : public testing::Test {
 protected:
  void SetUp() override {
    std::mt19937 rng(20240611);
    for (const PixelDepth depth : {PixelDepth::Depth8, PixelDepth::Depth16, PixelDepth::Depth32f}) {
      const auto d = static_cast<size_t>(depth);
      inputs_[d].emplace(depth, 121, 67, 24);
      inputs_[d]->Paint(depth, 100 + static_cast<uint32_t>(d));
      layers_[d].emplace(depth, 143, 85, 8);
      layers_[d]->Paint(depth, 200 + static_cast<uint32_t>(d));
      blanks_[d].emplace(depth, 121, 67, 24);
      blanks_[d]->Paint(depth, 300 + static_cast<uint32_t>(d));
    }
    constexpr float kScales[] = {1.0f, 0.5f, 0.25f};
    for (int i = 0; i < kJobs; ++i) {
      Job job;
      job.depth = static_cast<PixelDepth>(i % 3);
      job.record = RandomRecord(rng);
      job.withLayer = i % 2 == 0;
      job.scale = kScales[(i / 3) % 3];
      job.originX = (i / 6) % 4 == 0 ? 9 : 0;
      job.originY = (i / 6) % 4 == 1 ? 5 : 0;
      jobs_.push_back(job);
    }
  }

  // Renders one job into a fresh output; the inputs and layers are shared by all threads.
  OwnedImage Render(const Job& job) {
    const auto d = static_cast<size_t>(job.depth);
    OwnedImage output(*blanks_[d]);
    output.World().origin_x = job.originX;
    output.World().origin_y = job.originY;
    StretchRenderRecord record = job.record;
    record.intensityLayer = job.withLayer ? &layers_[d]->World() : nullptr;
    DispatchStretchForDepth(job.depth, inputs_[d]->World(), output.World(), record, job.scale);
    return output;
  }

  std::optional<OwnedImage> inputs_[3];
  std::optional<OwnedImage> layers_[3];
  std::optional<OwnedImage> blanks_[3];
  std::vector<Job> jobs_;
};

TEST_F(StressDispatchConcurrency, FourThreadsRenderExactlyWhatOneThreadRenders) {
  std::vector<std::vector<uint8_t>> serial;
  for (const Job& job : jobs_) {
    serial.push_back(Render(job).Bytes());
    // Every job writes its output (a copy of the input at intensity 0).
    EXPECT_NE(serial.back(), blanks_[static_cast<size_t>(job.depth)]->Bytes());
  }
  const std::vector<std::vector<uint8_t>> inputsBefore{inputs_[0]->Bytes(), inputs_[1]->Bytes(),
                                                       inputs_[2]->Bytes()};

  // Two rounds, the second taking the jobs in reverse, so different jobs overlap in time.
  for (const bool reverse : {false, true}) {
    std::vector<std::vector<uint8_t>> concurrent(jobs_.size());
    std::atomic<size_t> next{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < kThreads; ++t) {
      workers.emplace_back([&] {
        for (size_t n = next++; n < jobs_.size(); n = next++) {
          const size_t i = reverse ? jobs_.size() - 1 - n : n;
          concurrent[i] = Render(jobs_[i]).Bytes();
        }
      });
    }
    for (std::thread& worker : workers)
      worker.join();
    for (size_t i = 0; i < jobs_.size(); ++i) {
      EXPECT_EQ(concurrent[i], serial[i]) << "job " << i << (reverse ? " (reverse round)" : "");
    }
  }
  for (size_t d = 0; d < 3; ++d)
    EXPECT_EQ(inputs_[d]->Bytes(), inputsBefore[d]);
}

}  // namespace
}  // namespace morvane::stress
