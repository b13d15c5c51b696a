// The built frei0r modules, loaded as a host loads them and driven through their entry points.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "frei0r/FreiApi.h"
#include "frei0r/FreiSettings.h"
#include "tests/frei0r/ReferenceRender.h"

namespace morvane::frei0r {
namespace {

// The frei0r entry points of one loaded module.
class Module {
 public:
  explicit Module(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) return;
    Bind(init, "f0r_init");
    Bind(info, "f0r_get_plugin_info");
    Bind(paramInfo, "f0r_get_param_info");
    Bind(construct, "f0r_construct");
    Bind(destruct, "f0r_destruct");
    Bind(set, "f0r_set_param_value");
    Bind(get, "f0r_get_param_value");
    Bind(update, "f0r_update");
    Bind(update2, "f0r_update2");
  }
  ~Module() {
    if (handle_ != nullptr) dlclose(handle_);
  }
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  bool Loaded() const { return handle_ != nullptr && update2 != nullptr; }

  decltype(&f0r_init) init = nullptr;
  decltype(&f0r_get_plugin_info) info = nullptr;
  decltype(&f0r_get_param_info) paramInfo = nullptr;
  decltype(&f0r_construct) construct = nullptr;
  decltype(&f0r_destruct) destruct = nullptr;
  decltype(&f0r_set_param_value) set = nullptr;
  decltype(&f0r_get_param_value) get = nullptr;
  decltype(&f0r_update) update = nullptr;
  decltype(&f0r_update2) update2 = nullptr;

 private:
  template <typename Fn>
  void Bind(Fn& fn, const char* name) {
    fn = reinterpret_cast<Fn>(dlsym(handle_, name));
  }
  void* handle_;
};

constexpr int kWidth = 24;
constexpr int kHeight = 16;

// A frame with colour gradients, transparent and half-transparent pixels (colour kept under
// alpha 0, as straight alpha hands it over).
std::vector<uint8_t> TestFrame(int seed) {
  std::vector<uint8_t> rgba(std::size_t(kWidth) * kHeight * 4);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      uint8_t* p = &rgba[(std::size_t(y) * kWidth + x) * 4];
      p[0] = uint8_t(x * 11 + seed * 37);
      p[1] = uint8_t(y * 15 + x * 3);
      p[2] = uint8_t((x ^ y) * 9 + seed);
      p[3] = x < 4 ? 0 : (y < 5 ? 128 : 255);
    }
  return rgba;
}

class Frei0rModule : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(filter.Loaded()) << dlerror();
    ASSERT_TRUE(mixer.Loaded()) << dlerror();
    ASSERT_EQ(filter.init(), 1);
    ASSERT_EQ(mixer.init(), 1);
  }

  // Sets parameters from frei0r values: strings for popups, doubles otherwise.
  static void Set(const Module& module, f0r_instance_t instance, int index, double value) {
    module.set(instance, &value, index);
  }
  static void Set(const Module& module, f0r_instance_t instance, int index, const char* text) {
    auto* string = const_cast<char*>(text);
    module.set(instance, &string, index);
  }

  Module filter{MORVANE_FREI0R_FILTER};
  Module mixer{MORVANE_FREI0R_MIXER};
};

TEST_F(Frei0rModule, DescribesFilterAndMixer) {
  f0r_plugin_info_t info{};
  filter.info(&info);
  EXPECT_EQ(info.plugin_type, F0R_PLUGIN_TYPE_FILTER);
  EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_RGBA8888);
  EXPECT_EQ(info.num_params, 20);
  mixer.info(&info);
  EXPECT_EQ(info.plugin_type, F0R_PLUGIN_TYPE_MIXER2);
  EXPECT_EQ(info.num_params, 20);
}

TEST_F(Frei0rModule, ParametersInTheControlsOrder) {
  const std::array<std::pair<const char*, int>, 20> expected = {{
      {"Direction", F0R_PARAM_STRING},
      {"Channels", F0R_PARAM_STRING},
      {"Morvane Intensity", F0R_PARAM_DOUBLE},
      {"Morvane", F0R_PARAM_DOUBLE},
      {"Pixel Size", F0R_PARAM_DOUBLE},
      {"Stretch Curve", F0R_PARAM_STRING},
      {"Curve Phase", F0R_PARAM_DOUBLE},
      {"Curve Smoothness", F0R_PARAM_DOUBLE},
      {"Stretch Start Offset", F0R_PARAM_DOUBLE},
      {"Distribution Mode", F0R_PARAM_STRING},
      {"Distribution Range", F0R_PARAM_DOUBLE},
      {"Image Shift Phase", F0R_PARAM_DOUBLE},
      {"Image Shift Phase Sync", F0R_PARAM_BOOL},
      {"Shading", F0R_PARAM_STRING},
      {"Shading Interval Size", F0R_PARAM_DOUBLE},
      {"Shading Interval Phase", F0R_PARAM_DOUBLE},
      {"Shading Channel(s)", F0R_PARAM_STRING},
      {"Shading Opacity", F0R_PARAM_DOUBLE},
      {"Edge Mode", F0R_PARAM_STRING},
      {"Transparency Feather", F0R_PARAM_DOUBLE},
  }};
  for (const Module* module : {&filter, &mixer})
    for (int i = 0; i < 20; ++i) {
      f0r_param_info_t info{};
      module->paramInfo(&info, i);
      EXPECT_STREQ(info.name, expected[std::size_t(i)].first) << i;
      EXPECT_EQ(info.type, expected[std::size_t(i)].second) << i;
      ASSERT_NE(info.explanation, nullptr);
      EXPECT_GT(std::strlen(info.explanation), 20u) << i;
    }
}

TEST_F(Frei0rModule, ReportsDefaultsAndTakesValues) {
  f0r_instance_t instance = filter.construct(kWidth, kHeight);
  ASSERT_NE(instance, nullptr);
  char* item = nullptr;
  filter.get(instance, &item, 0);
  EXPECT_STREQ(item, "right");
  double value = 0.0;
  filter.get(instance, &value, 2);
  EXPECT_EQ(value, 1.0);
  filter.get(instance, &value, 12);
  EXPECT_EQ(value, 1.0);

  Set(filter, instance, 0, "Up");
  Set(filter, instance, 0, "diagonal");  // refused: keeps "up"
  filter.get(instance, &item, 0);
  EXPECT_STREQ(item, "up");
  Set(filter, instance, 6, 0.125);
  filter.get(instance, &value, 6);
  EXPECT_EQ(value, 0.125);
  filter.destruct(instance);
}

TEST_F(Frei0rModule, ZeroIntensityHandsThePixelsThroughUnchanged) {
  f0r_instance_t instance = filter.construct(kWidth, kHeight);
  Set(filter, instance, 2, 0.0);
  const auto input = TestFrame(1);
  std::vector<uint8_t> output(input.size());
  filter.update(instance, 0.0, reinterpret_cast<const uint32_t*>(input.data()),
                reinterpret_cast<uint32_t*>(output.data()));
  EXPECT_EQ(output, input);
  filter.destruct(instance);
}

// The same frame through the module and through DispatchStretch directly.
TEST_F(Frei0rModule, FilterEqualsTheDispatcherInEveryDirection) {
  for (const char* direction : {"right", "left", "down", "up"}) {
    f0r_instance_t instance = filter.construct(kWidth, kHeight);
    Set(filter, instance, 0, direction);
    Set(filter, instance, 1, "rgba");
    Set(filter, instance, 3, 0.05);
    FreiSettings settings;
    settings.SetItem(FreiParam::Direction, direction);
    settings.SetItem(FreiParam::Channels, "rgba");
    settings.SetNumber(FreiParam::Morvane, 0.05);

    const auto input = TestFrame(2);
    std::vector<uint8_t> output(input.size());
    filter.update(instance, 0.0, reinterpret_cast<const uint32_t*>(input.data()),
                  reinterpret_cast<uint32_t*>(output.data()));
    const auto expected =
        testing::ReferenceRender(kWidth, kHeight, settings.Record(), input, nullptr);
    EXPECT_EQ(output, expected) << direction;
    EXPECT_NE(output, input) << direction;
    filter.destruct(instance);
  }
}

TEST_F(Frei0rModule, MixerTakesTheSecondInputAsIntensity) {
  f0r_instance_t instance = mixer.construct(kWidth, kHeight);
  Set(mixer, instance, 3, 0.1);
  FreiSettings settings;
  settings.SetNumber(FreiParam::Morvane, 0.1);

  const auto input = TestFrame(3);
  const auto layer = TestFrame(9);
  std::vector<uint8_t> output(input.size());
  mixer.update2(instance, 0.0, reinterpret_cast<const uint32_t*>(input.data()),
                reinterpret_cast<const uint32_t*>(layer.data()), nullptr,
                reinterpret_cast<uint32_t*>(output.data()));
  const auto withLayer =
      testing::ReferenceRender(kWidth, kHeight, settings.Record(), input, &layer);
  const auto selfIntensity =
      testing::ReferenceRender(kWidth, kHeight, settings.Record(), input, nullptr);
  EXPECT_EQ(output, withLayer);
  EXPECT_NE(output, selfIntensity);
  mixer.destruct(instance);
}

// MLT's sliced rendering calls one instance from several threads at once, setting the same
// parameter values from each: every call must still render its own frame.
TEST_F(Frei0rModule, OneInstanceServesSeveralThreadsAtOnce) {
  constexpr int kThreads = 4;
  f0r_instance_t instance = filter.construct(kWidth, kHeight);
  Set(filter, instance, 0, "right");
  Set(filter, instance, 3, 0.05);
  std::array<std::vector<uint8_t>, kThreads> inputs;
  std::array<std::vector<uint8_t>, kThreads> expected;
  std::array<std::vector<uint8_t>, kThreads> results;
  for (int i = 0; i < kThreads; ++i) {
    inputs[i] = TestFrame(10 + i);
    expected[i].resize(inputs[i].size());
    results[i].resize(inputs[i].size());
    filter.update(instance, 0.0, reinterpret_cast<const uint32_t*>(inputs[i].data()),
                  reinterpret_cast<uint32_t*>(expected[i].data()));
  }
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      for (int frame = 0; frame < 50; ++frame) {
        Set(filter, instance, 0, "right");
        Set(filter, instance, 3, 0.05);
        filter.update(instance, frame, reinterpret_cast<const uint32_t*>(inputs[i].data()),
                      reinterpret_cast<uint32_t*>(results[i].data()));
        if (results[i] != expected[i]) return;
      }
    });
  for (auto& thread : threads)
    thread.join();
  for (int i = 0; i < kThreads; ++i)
    EXPECT_EQ(results[i], expected[i]) << i;
  filter.destruct(instance);
}

}  // namespace
}  // namespace morvane::frei0r
