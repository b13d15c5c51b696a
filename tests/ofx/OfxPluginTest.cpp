// The OpenFX plug-in loaded by its two exported functions into a small host of this test's own:
// renders at float depth (which MLT never asks for) with images whose bounds do not start at 0
// and whose rows run bottom-up, compared bit for bit with DispatchStretch; and the statuses of
// hostile uses.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdarg>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ofx/Actions.h"
#include "ofx/HostImage.h"
#include "params/ControlTable.h"
#include "render/DispatchStretch.h"

// The host's suites fill only the functions the plug-in calls.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace morvane::ofx {
namespace {

// Every object of the host (effect, clip, image, parameter) is a property set, numbers (ints too)
// as doubles, with the objects it holds by name ("Source", "image", a parameter's name).
struct Node {
  std::map<std::string, std::vector<double>> numbers;
  std::map<std::string, std::vector<std::string>> strings;
  std::map<std::string, void*> pointers;
  std::map<std::string, Node> children;
  std::string message;  // what the plug-in last told the user
};

template <typename T>
auto& Slot(OfxPropertySetHandle h, const char* name) {
  auto* set = reinterpret_cast<Node*>(h);
  if constexpr (std::is_pointer_v<T> && !std::is_same_v<T, void*>)
    return set->strings[name];
  else
    return set->numbers[name];
}
template <typename T>
OfxStatus SetProp(OfxPropertySetHandle h, const char* name, int i, T value) {
  if constexpr (std::is_same_v<T, void*>) {
    reinterpret_cast<Node*>(h)->pointers[name] = value;
  } else {
    auto& values = Slot<T>(h, name);
    values.resize(std::max<std::size_t>(values.size(), i + 1));
    values[i] = value;
  }
  return kOfxStatOK;
}
template <typename T>
OfxStatus GetProp(OfxPropertySetHandle h, const char* name, int i, T* value) {
  if constexpr (std::is_same_v<T, void*>) {
    auto& pointers = reinterpret_cast<Node*>(h)->pointers;
    *value = pointers.count(name) ? pointers[name] : nullptr;
    return pointers.count(name) ? kOfxStatOK : kOfxStatErrUnknown;
  } else {
    auto& values = Slot<T>(h, name);
    if (values.size() <= std::size_t(i)) return kOfxStatErrUnknown;
    if constexpr (std::is_same_v<T, char*>)
      *value = values[i].data();
    else
      *value = T(values[i]);
    return kOfxStatOK;
  }
}
template <typename T>
OfxStatus SetPropN(OfxPropertySetHandle h, const char* name, int count, const T* values) {
  for (int i = 0; i < count; ++i)
    SetProp<T>(h, name, i, values[i]);
  return kOfxStatOK;
}
template <typename T>
OfxStatus GetPropN(OfxPropertySetHandle h, const char* name, int count, T* values) {
  for (int i = 0; i < count; ++i)
    if (GetProp<T>(h, name, i, values + i) != kOfxStatOK) return kOfxStatErrUnknown;
  return kOfxStatOK;
}
// clang-format off
const OfxPropertySuiteV1 kProperties = {
    .propSetPointer = SetProp<void*>, .propSetString = SetProp<const char*>,
    .propSetDouble = SetProp<double>, .propSetInt = SetProp<int>,
    .propSetDoubleN = SetPropN<double>, .propGetPointer = GetProp<void*>,
    .propGetString = GetProp<char*>, .propGetDouble = GetProp<double>, .propGetInt = GetProp<int>,
    .propGetDoubleN = GetPropN<double>, .propGetIntN = GetPropN<int>};
// clang-format on

Node* N(const void* h) {
  return static_cast<Node*>(const_cast<void*>(h));
}
OfxPropertySetHandle H(Node& node) {
  return reinterpret_cast<OfxPropertySetHandle>(&node);
}
template <typename Out>
OfxStatus Hand(Out* out, Out value, bool ok = true) {
  *out = value;
  return ok ? kOfxStatOK : kOfxStatFailed;
}

const OfxImageEffectSuiteV1 kEffects = {
    .getPropertySet = [](OfxImageEffectHandle e,
                         OfxPropertySetHandle* p) { return Hand(p, H(*N(e))); },
    .getParamSet = [](OfxImageEffectHandle e,
                      OfxParamSetHandle* p) { return Hand(p, OfxParamSetHandle(e)); },
    .clipDefine = [](OfxImageEffectHandle e, const char* name,
                     OfxPropertySetHandle* p) { return Hand(p, H(N(e)->children[name])); },
    .clipGetHandle =
        [](OfxImageEffectHandle e, const char* name, OfxImageClipHandle* c, OfxPropertySetHandle*) {
          const bool has = N(e)->children.count(name) != 0;
          return Hand(c, has ? OfxImageClipHandle(&N(e)->children[name]) : nullptr, has);
        },
    .clipGetPropertySet = [](OfxImageClipHandle c,
                             OfxPropertySetHandle* p) { return Hand(p, H(*N(c))); },
    .clipGetImage =
        [](OfxImageClipHandle c, OfxTime, const OfxRectD*, OfxPropertySetHandle* p) {
          Node& image = N(c)->children["image"];
          return Hand(p, H(image), image.pointers.count(kOfxImagePropData) != 0);
        },
    .clipReleaseImage = [](OfxPropertySetHandle) { return kOfxStatOK; },
    .clipGetRegionOfDefinition =
        [](OfxImageClipHandle c, OfxTime, OfxRectD* rod) {
          const auto& b = N(c)->children["image"].numbers[kOfxImagePropBounds];
          return Hand(rod, OfxRectD{b[0], b[1], b[2], b[3]});
        }};

OfxStatus ParamValue(OfxParamHandle h, OfxTime time, ...) {
  const double value = N(h)->numbers[kOfxParamPropDefault][0];
  va_list args;
  va_start(args, time);
  if (N(h)->strings["type"][0] == kOfxParamTypeDouble)
    *va_arg(args, double*) = value;
  else
    *va_arg(args, int*) = int(value);
  va_end(args);
  return kOfxStatOK;
}
const OfxParameterSuiteV1 kParameters = {
    .paramDefine =
        [](OfxParamSetHandle s, const char* type, const char* name, OfxPropertySetHandle* p) {
          N(s)->children[name].strings["type"] = {type};
          return Hand(p, H(N(s)->children[name]));
        },
    .paramGetHandle =
        [](OfxParamSetHandle s, const char* name, OfxParamHandle* h, OfxPropertySetHandle*) {
          return Hand(h, reinterpret_cast<OfxParamHandle>(&N(s)->children.at(name)));
        },
    .paramGetValueAtTime = ParamValue};

OfxStatus Message(void* h, const char*, const char*, const char* format, ...) {
  va_list args;
  va_start(args, format);
  N(h)->message = va_arg(args, const char*);
  va_end(args);
  return kOfxStatOK;
}
const OfxMessageSuiteV1 kMessages = {Message};

OfxHost gHost{nullptr, [](OfxPropertySetHandle, const char* name, int) -> const void* {
                const std::string suite = name;
                if (suite == kOfxPropertySuite) return &kProperties;
                if (suite == kOfxImageEffectSuite) return &kEffects;
                if (suite == kOfxParameterSuite) return &kParameters;
                return suite == kOfxMessageSuite ? &kMessages : nullptr;
              }};

OfxPlugin* Plugin() {
  static void* module = dlopen(MORVANE_OFX_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  static auto* plugin = reinterpret_cast<OfxPlugin* (*)(int)>(dlsym(module, "OfxGetPlugin"))(0);
  return plugin;
}

// Host float pixels of `components` channels (RGBA or RGB), bottom row first, `pad` floats past
// each row.
struct HostPixels {
  OfxRectI bounds;
  int pad, components;
  std::vector<float> values;
  int RowFloats() const { return (bounds.x2 - bounds.x1) * components + pad; }
  void Attach(Node& image) {
    values.resize(std::size_t(RowFloats()) * (bounds.y2 - bounds.y1));
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = float((i * 2654435761u) % 1000) / 997.0f;
    image.pointers[kOfxImagePropData] = values.data();
    image.numbers[kOfxImagePropRowBytes] = {RowFloats() * 4.0};
    image.numbers[kOfxImagePropBounds] = {double(bounds.x1), double(bounds.y1), double(bounds.x2),
                                          double(bounds.y2)};
    image.strings[kOfxImageEffectPropPixelDepth] = {kOfxBitDepthFloat};
    image.strings[kOfxImageEffectPropComponents] = {components == 3 ? kOfxImageComponentRGB
                                                                    : kOfxImageComponentRGBA};
  }
  // The kernel's layout (ARGB, top row first), as the plug-in reads the host's images.
  KernelImage<float> Kernel() {
    return ReadHostImage<float, float>(
        {values.data(), RowFloats() * 4, bounds, HostDepth::Float, components}, bounds);
  }
};

enum class Fault { None, NoInstance, NoSourceImage, DepthsDiffer };

struct Case {
  const char* name;
  const char* context;
  OfxRectI source, intensity, window;
  double scale;
  int components;       // of the source and output images
  Fault fault;          // none: the render succeeds; any other: it fails
  const char* message;  // part of what the user is told, or "" for nothing
};

class OfxRender : public testing::TestWithParam<Case> {};

// Loads the plug-in, describes `effect` in `context` and creates an instance of it unless told not
// to; `controls` are the parameters' values, by script name.
void Create(Node& effect, const char* context, bool instance,
            std::initializer_list<std::pair<const char*, double>> controls) {
  ASSERT_NE(Plugin(), nullptr);
  Plugin()->setHost(&gHost);
  ASSERT_EQ(Plugin()->mainEntry(kOfxActionLoad, nullptr, nullptr, nullptr), kOfxStatOK);
  Node args;
  args.strings[kOfxImageEffectPropContext] = {context};
  ASSERT_EQ(Plugin()->mainEntry(kOfxActionDescribe, &effect, nullptr, nullptr), kOfxStatOK);
  ASSERT_EQ(Plugin()->mainEntry(kOfxImageEffectActionDescribeInContext, &effect, H(args), nullptr),
            kOfxStatOK);
  for (const auto& [name, value] : controls)
    effect.children.at(name).numbers[kOfxParamPropDefault] = {value};
  effect.strings[kOfxImageEffectPropContext] = {context};
  if (instance) {
    ASSERT_EQ(Plugin()->mainEntry(kOfxActionCreateInstance, &effect, nullptr, nullptr), kOfxStatOK);
  }
}

TEST_P(OfxRender, EqualsTheDispatcherOrReportsTheFailure) {
  const Case& c = GetParam();
  Node effect;
  Node args, out;
  // Down, Morvane 7.5, Mirror
  Create(effect, c.context, c.fault != Fault::NoInstance,
         {{"direction", 2}, {"morvane", 7.5}, {"edgeMode", 1}});

  HostPixels source{c.source, 3, c.components, {}}, output{c.source, 0, c.components, {}},
      intensity{c.intensity, 1, 4, {}};
  source.Attach(effect.children["Source"].children["image"]);
  output.Attach(effect.children["Output"].children["image"]);
  const std::vector<float> before = output.values;
  const bool layer = !IsEmpty(c.intensity);
  effect.children[kIntensityClipName].numbers[kOfxImageClipPropConnected] = {double(layer)};
  if (layer) intensity.Attach(effect.children[kIntensityClipName].children["image"]);
  if (c.fault == Fault::DepthsDiffer)
    effect.children["Output"].children["image"].strings[kOfxImageEffectPropPixelDepth] = {
        kOfxBitDepthShort};
  if (c.fault == Fault::NoSourceImage) effect.children["Source"].children["image"].pointers.clear();
  args.numbers[kOfxPropTime] = {0.0};
  args.numbers[kOfxImageEffectPropRenderScale] = {c.scale, c.scale};
  args.numbers[kOfxImageEffectPropRenderWindow] = {double(c.window.x1), double(c.window.y1),
                                                   double(c.window.x2), double(c.window.y2)};
  const bool fails = c.fault != Fault::None;
  EXPECT_EQ(Plugin()->mainEntry(kOfxImageEffectActionRender, &effect, H(args), H(out)),
            fails ? kOfxStatFailed : kOfxStatOK);
  EXPECT_NE(effect.message.find(c.message), std::string::npos) << effect.message;
  EXPECT_EQ(effect.message.empty(), *c.message == '\0');
  if (c.fault != Fault::NoInstance)
    Plugin()->mainEntry(kOfxActionDestroyInstance, &effect, nullptr, nullptr);
  if (fails || IsEmpty(c.window)) {
    EXPECT_EQ(output.values, before) << "the output was touched";
    return;
  }

  // The same pixels through DispatchStretch inside the window; outside it, what the host had.
  KernelImage<float> in = source.Kernel(), expected(in.width, in.height),
                     layerPixels = intensity.Kernel();
  PF_EffectWorld inWorld = in.World(), outWorld = expected.World(),
                 layerWorld = layerPixels.World();
  StretchRenderRecord record = DefaultRecord();
  record.direction = 2;
  record.stretchAmount = 7.5;
  record.edgeMode = 1;
  record.intensityLayer = layer ? &layerWorld : nullptr;
  DispatchStretch<PixelDepth::Depth32f>(inWorld, outWorld, record, float(c.scale));
  const KernelImage<float> rendered = output.Kernel();
  output.values = before;
  KernelImage<float> want = output.Kernel();
  for (int y = c.window.y1; y < c.window.y2; ++y) {  // the window lies inside the image
    const std::size_t at =
        (std::size_t(c.source.y2 - 1 - y) * in.width + c.window.x1 - c.source.x1) * 4;
    std::copy_n(&expected.values[at], (c.window.x2 - c.window.x1) * 4, &want.values[at]);
  }
  for (std::size_t i = 0; c.components == 3 && i < want.values.size(); i += 4)
    want.values[i] = 1.0f;  // an RGB image holds no alpha: read back, it is opaque
  EXPECT_EQ(rendered.values, want.values);
  EXPECT_NE(rendered.values, in.values) << "the render changed nothing";
}

constexpr OfxRectI kImage{-3, 5, 37, 29}, kNone{0, 0, 0, 0};
constexpr const char *kFilter = kOfxImageEffectContextFilter,
                     *kGeneral = kOfxImageEffectContextGeneral;
using enum Fault;
// clang-format off
INSTANTIATE_TEST_SUITE_P(
    Cases, OfxRender,
    testing::Values(
        Case{"WholeWindow", kFilter, kImage, kNone, kImage, 1.0, 4, None, ""},
        Case{"PartWindowAtHalfScale", kFilter, kImage, kNone, {0, 9, 20, 21}, 0.5, 4, None, ""},
        Case{"IntensityClipOfOtherSize", kGeneral, kImage, {2, 2, 13, 9}, kImage, 1.0, 4, None, ""},
        Case{"RgbImages", kFilter, kImage, kNone, kImage, 1.0, 3, None, ""},
        Case{"IntensityClipNotConnected", kGeneral, kImage, kNone, kImage, 1.0, 4, None, ""},
        Case{"ZeroSizedWindow", kFilter, kImage, kNone, {4, 9, 4, 20}, 1.0, 4, None, ""},
        Case{"NoInstance", kFilter, kImage, kNone, kImage, 1.0, 4, NoInstance, "not created"},
        Case{"NoSourceImage", kFilter, kImage, kNone, kImage, 1.0, 4, NoSourceImage, "no image of"},
        Case{"DepthsDiffer", kFilter, kImage, kNone, kImage, 1.0, 4, DepthsDiffer, "depths"}),
    [](const auto& info) { return std::string(info.param.name); });
// clang-format on

// What a host is told before it renders: the source's own region of definition; the whole lines
// a region of interest crosses, or the whole source and intensity clip when that clip is
// connected; and at Morvane Intensity 0 that the source is handed through.
TEST(OfxRegions, FollowTheDirectionTheIntensityClipAndTheIntensity) {
  using Rect = std::vector<double>;
  const struct {
    double direction, intensity;
    bool layer;
    Rect source;
    OfxStatus identity;
  } kRows[] = {{0, 100, false, {-3, 12, 37, 20}, kOfxStatReplyDefault},
               {3, 0, false, {4, 5, 9, 29}, kOfxStatOK},
               {2, 50, true, {-3, 5, 37, 29}, kOfxStatReplyDefault}};
  for (const auto& row : kRows) {
    Node effect;
    Node args, out;
    Create(effect, kOfxImageEffectContextGeneral, true,
           {{"direction", row.direction}, {"morvaneIntensity", row.intensity}});
    HostPixels source{{-3, 5, 37, 29}, 0, 4, {}}, intensity{{2, 2, 13, 9}, 0, 4, {}};
    source.Attach(effect.children["Source"].children["image"]);
    intensity.Attach(effect.children[kIntensityClipName].children["image"]);
    effect.children[kIntensityClipName].numbers[kOfxImageClipPropConnected] = {double(row.layer)};
    args.numbers[kOfxPropTime] = {0.0};
    args.numbers[kOfxImageEffectPropRegionOfInterest] = {4, 12, 9, 20};
    const auto call = [&](const char* action) {
      return Plugin()->mainEntry(action, &effect, H(args), H(out));
    };
    EXPECT_EQ(call(kOfxImageEffectActionGetRegionOfDefinition), kOfxStatOK);
    EXPECT_EQ(out.numbers[kOfxImageEffectPropRegionOfDefinition], (Rect{-3, 5, 37, 29}));
    EXPECT_EQ(call(kOfxImageEffectActionGetRegionsOfInterest), kOfxStatOK);
    EXPECT_EQ(out.numbers["OfxImageClipPropRoI_Source"], row.source);
    EXPECT_EQ(out.numbers["OfxImageClipPropRoI_Intensity Source"],
              (row.layer ? Rect{2, 2, 13, 9} : Rect{}));
    EXPECT_EQ(call(kOfxImageEffectActionIsIdentity), row.identity);
    using Names = std::vector<std::string>;
    EXPECT_EQ(out.strings[kOfxPropName], (row.identity == kOfxStatOK ? Names{"Source"} : Names{}));
    EXPECT_EQ(call(kOfxActionDestroyInstance), kOfxStatOK);
  }
}

}  // namespace
}  // namespace morvane::ofx
