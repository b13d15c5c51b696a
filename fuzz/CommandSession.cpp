#include "fuzz/CommandSession.h"

#include <cstring>
#include <exception>
#include <iterator>
#include <limits>

#include "hostsim/CustomUI.h"
#include "params/ParamId.h"

namespace morvane::fuzz {
namespace {

using hostsim::Callback;
using hostsim::SuiteFunction;

// Functions through which the effect obtains something. Functions that give something back
// (unlock, dispose, check-in, release) are left working: when they fail, the host itself keeps
// what the effect returned, and the session's report would blame the effect for it.
const std::vector<std::string>& FallibleFunctions() {
  static const std::vector<std::string> functions{
      Callback("utils", "host_new_handle"),
      Callback("utils", "host_lock_handle"),
      Callback("utils", "host_get_handle_size"),
      Callback("utils", "host_resize_handle"),
      Callback("utils", "sprintf"),
      Callback("utils", "strcpy"),
      Callback("inter", "checkout_param"),
      Callback("inter", "add_param"),
      Callback("inter", "register_ui"),
      Callback("prerender", "checkout_layer"),
      Callback("smartrender", "checkout_layer_pixels"),
      Callback("smartrender", "checkout_output"),
      Callback("registration", "PF_PluginDataCB"),
      SuiteFunction(kPFHandleSuite, kPFHandleSuiteVersion1, "host_new_handle"),
      SuiteFunction(kPFHandleSuite, kPFHandleSuiteVersion1, "host_lock_handle"),
      SuiteFunction(kPFWorldSuite, kPFWorldSuiteVersion2, "PF_GetPixelFormat"),
      SuiteFunction(kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, "ClearSupportedPixelFormats"),
      SuiteFunction(kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, "AddSupportedPixelFormat"),
      SuiteFunction(kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, "GetPixelFormat"),
      SuiteFunction(kPFUtilitySuite, kPFUtilitySuiteVersion4,
                    "EffectWantsCheckedOutFramesToMatchRenderPixelFormat"),
      SuiteFunction(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, "PF_UpdateParamUI"),
      SuiteFunction(kPFEffectCustomUISuite, kPFEffectCustomUISuiteVersion1,
                    "PF_GetDrawingReference"),
      SuiteFunction(kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1, "GetSupplier"),
      SuiteFunction(kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1, "GetSurface"),
      SuiteFunction(kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1, "NewImageFromBuffer"),
      SuiteFunction(kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2, "DrawImage"),
  };
  return functions;
}

struct SuiteName {
  const char* name;
  int32_t version;
};
constexpr SuiteName kSuites[] = {
    {kPFHandleSuite, kPFHandleSuiteVersion1},
    {kPFWorldSuite, kPFWorldSuiteVersion2},
    {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3},
    {kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1},
    {kPFUtilitySuite, kPFUtilitySuiteVersion4},
    {kPFEffectCustomUISuite, kPFEffectCustomUISuiteVersion1},
    {kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1},
    {kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1},
    {kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2},
    {kDRAWBOT_PathSuite, kDRAWBOT_PathSuite_Version1},
};

// Errors a failing host function reports, and those the host produces by itself.
constexpr PF_Err kHostErrors[] = {PF_Err_OUT_OF_MEMORY,
                                  PF_Err_INTERNAL_STRUCT_DAMAGED,
                                  PF_Err_INVALID_INDEX,
                                  PF_Err_UNRECOGNIZED_PARAM_TYPE,
                                  PF_Err_INVALID_CALLBACK,
                                  PF_Err_BAD_CALLBACK_PARAM,
                                  PF_Interrupt_CANCEL,
                                  1,
                                  -1,
                                  0x7FFF0000};

// Commands the effect does not handle: they must succeed and change nothing.
constexpr PF_Cmd kUnhandledCommands[] = {PF_Cmd_UNUSED_0,
                                         PF_Cmd_GLOBAL_SETDOWN,
                                         PF_Cmd_DO_DIALOG,
                                         PF_Cmd_FRAME_SETUP,
                                         PF_Cmd_FRAME_SETDOWN,
                                         PF_Cmd_GET_EXTERNAL_DEPENDENCIES,
                                         PF_Cmd_COMPLETELY_GENERAL,
                                         PF_Cmd_QUERY_DYNAMIC_FLAGS,
                                         PF_Cmd_AUDIO_RENDER,
                                         PF_Cmd_AUDIO_SETUP,
                                         PF_Cmd_AUDIO_SETDOWN,
                                         PF_Cmd_ARBITRARY_CALLBACK,
                                         PF_Cmd_RESERVED1,
                                         PF_Cmd_RESERVED3,
                                         PF_Cmd_RESERVED4,
                                         PF_Cmd_TRANSLATE_PARAMS_TO_PREFS,
                                         PF_Cmd_SMART_RENDER_GPU,
                                         PF_Cmd_GPU_DEVICE_SETUP,
                                         PF_Cmd_GPU_DEVICE_SETDOWN,
                                         PF_Cmd_NUM_CMDS,
                                         100,
                                         -1};

template <typename T, size_t N>
const T& PickFrom(FuzzedDataProvider& data, const T (&items)[N]) {
  return items[data.ConsumeIntegralInRange<size_t>(0, N - 1)];
}

}  // namespace

CommandSession::~CommandSession() {
  for (PF_EffectWorld* world : worlds_)
    host_.Worlds().Dispose(world);
}

void CommandSession::Check(const char* command, PF_Err err) {
  Note(std::string(command) + " -> " + std::to_string(err));
  if (err == PF_Err_NONE || err == A_Err_MISSING_SUITE) return;
  for (const PF_Err known : kHostErrors) {
    if (err == known) return;
  }
  problems_.push_back(std::string(command) + " returned " + std::to_string(err) +
                      ", which is no host error code");
}

hostsim::EffectInstance& CommandSession::PickInstance() {
  if (instances_.empty() || data_.ConsumeIntegralInRange(0, 15) == 0) {
    instances_.push_back(&host_.NewInstance());
  }
  hostsim::EffectInstance& instance =
      *instances_[data_.ConsumeIntegralInRange<size_t>(0, instances_.size() - 1)];
  Note("instance " + std::to_string(instance.Id()) + ":");
  return instance;
}

PF_EffectWorld* CommandSession::NewWorld(int32_t maxSize) {
  const int32_t width = data_.ConsumeIntegralInRange(1, maxSize);
  const int32_t height = data_.ConsumeIntegralInRange(1, maxSize);
  const int32_t padding = data_.ConsumeBool() ? 0 : 4 * data_.ConsumeIntegralInRange(1, 6);
  PF_EffectWorld* world = host_.Worlds().Create(width, height, depth_, padding);
  worlds_.push_back(world);
  // Values inside each depth's range, varied by a seed.
  uint32_t state = data_.ConsumeIntegral<uint32_t>() | 1u;
  for (int32_t y = 0; y < height; ++y) {
    auto* row =
        reinterpret_cast<uint8_t*>(world->data) + static_cast<ptrdiff_t>(y) * world->rowbytes;
    for (int32_t c = 0; c < width * 4; ++c) {
      state ^= state << 13;
      state ^= state >> 17;
      state ^= state << 5;
      if (depth_ == hostsim::PixelDepth::Bits8) {
        row[c] = static_cast<uint8_t>(state);
      } else if (depth_ == hostsim::PixelDepth::Bits16) {
        const auto v = static_cast<uint16_t>(state % 32769u);
        std::memcpy(row + 2 * c, &v, sizeof v);
      } else {
        const float v = static_cast<float>(state % 1200u) / 1000.0f - 0.1f;
        std::memcpy(row + 4 * c, &v, sizeof v);
      }
    }
  }
  return world;
}

void CommandSession::ArmFault() {
  const std::string& function =
      FallibleFunctions()[data_.ConsumeIntegralInRange<size_t>(0, FallibleFunctions().size() - 1)];
  const int skip = data_.ConsumeIntegralInRange(0, 4);
  const int times = data_.ConsumeIntegralInRange(-1, 3);
  const PF_Err error = PickFrom(data_, kHostErrors);
  host_.Faults().Fail(function, error, skip, times);
  Note("fail " + function + " with " + std::to_string(error) + " after " + std::to_string(skip) +
       " calls, " + std::to_string(times) + " times");
}

void CommandSession::WithholdSuite(bool null) {
  const SuiteName& suite = PickFrom(data_, kSuites);
  Note(std::string(null ? "null suite " : "withhold suite ") + suite.name + " " +
       std::to_string(suite.version));
  if (null) {
    host_.Faults().NullSuite(suite.name, suite.version);
  } else {
    host_.Faults().WithholdSuite(suite.name, suite.version);
  }
}

void CommandSession::Lifecycle() {
  switch (data_.ConsumeIntegralInRange(0, 4)) {
    case 0:
      Check("PF_Cmd_GLOBAL_SETUP", host_.GlobalSetup().err);
      return;
    case 1:
      Check("PF_Cmd_PARAMS_SETUP", host_.ParamsSetup().err);
      return;
    case 2:
      Check("PF_Cmd_ABOUT", host_.About().err);
      return;
    case 3:
      Check("PF_Cmd_GLOBAL_SETDOWN", host_.GlobalSetdown().err);
      return;
    default:
      Check("PluginDataEntryFunction", host_.Register());
      return;
  }
}

void CommandSession::SequenceCommand() {
  switch (data_.ConsumeIntegralInRange(0, 7)) {
    case 0: {
      // A saved project's instance: the flat bytes as stored, of any length.
      const size_t length =
          data_.ConsumeBool() ? 296 : data_.ConsumeIntegralInRange<size_t>(0, 600);
      instances_.push_back(&host_.OpenInstance(std::vector<uint8_t>(length, 0)));
      Note("open instance " + std::to_string(instances_.back()->Id()) + " with " +
           std::to_string(length) + " flat bytes");
      return;
    }
    case 1:
      // A purged handle: its master pointer is null.
      instances_.push_back(&host_.OpenInstance(host_.Handles().NewWithoutData()));
      Note("open instance " + std::to_string(instances_.back()->Id()) + " with a purged handle");
      return;
    case 2:
      Check("PF_Cmd_SEQUENCE_SETUP", host_.SequenceSetup(PickInstance()).err);
      return;
    case 3:
      Check("PF_Cmd_SEQUENCE_RESETUP", host_.SequenceResetup(PickInstance()).err);
      return;
    case 4:
      Check("PF_Cmd_SEQUENCE_FLATTEN", host_.SequenceFlatten(PickInstance()).err);
      return;
    case 5:
      Check("PF_Cmd_GET_FLATTENED_SEQUENCE_DATA",
            host_.GetFlattenedSequenceData(PickInstance()).result.err);
      return;
    case 6:
      Check("PF_Cmd_SEQUENCE_SETDOWN", host_.SequenceSetdown(PickInstance()).err);
      return;
    default:
      if (data_.ConsumeBool()) {
        Check("PF_Cmd_UPDATE_PARAMS_UI",
              host_.UpdateParamsUI(PickInstance(), data_.ConsumeIntegralInRange(0, 30)).err);
      } else {
        hostsim::EffectInstance& instance = PickInstance();
        try {
          const int32_t id = data_.ConsumeIntegralInRange(1, kParamIdCount);
          Check("PF_Cmd_USER_CHANGED_PARAM", host_.UserChangedParam(instance, id).err);
        } catch (const std::out_of_range&) {
          // No such control in this host's list (parameter set-up failed or never ran).
        }
      }
      return;
  }
}

void CommandSession::SetControl() {
  hostsim::EffectInstance& instance = PickInstance();
  const int32_t id = data_.ConsumeIntegralInRange(1, kParamIdCount);
  const double value = data_.ConsumeBool() ? data_.ConsumeIntegralInRange(0, 9)
                                           : data_.ConsumeFloatingPointInRange(-400.0, 400.0);
  Note("set control " + std::to_string(id) + " to " + std::to_string(value));
  try {
    if (data_.ConsumeBool()) {
      host_.SetValue(instance, id, value);
    } else {
      const double other = data_.ConsumeFloatingPointInRange(-400.0, 400.0);
      const double at = data_.ConsumeIntegralInRange(1, 30);
      host_.SetKeyframes(instance, id, {{0.0, value}, {at, other}});
    }
  } catch (const std::exception&) {
    // A value the host itself refuses, or a control it does not have.
  }
}

void CommandSession::SetIntensityLayer() {
  hostsim::EffectInstance& instance = PickInstance();
  PF_EffectWorld* world = data_.ConsumeBool() ? NewWorld(24) : nullptr;
  Note(world != nullptr
           ? "intensity layer " + std::to_string(world->width) + "x" + std::to_string(world->height)
           : std::string("intensity layer none"));
  try {
    host_.SetLayer(instance, ToInt(ParamId::IntensitySource), world);
  } catch (const std::exception&) {
    // Parameter set-up has not declared the layer control.
  }
}

void CommandSession::RenderSmart() {
  hostsim::EffectInstance& instance = PickInstance();
  const int frames = data_.ConsumeBool() ? 1 : data_.ConsumeIntegralInRange(2, 4);
  std::vector<hostsim::SmartFrame> batch;
  for (int i = 0; i < frames; ++i) {
    hostsim::SmartFrame frame;
    frame.frame = data_.ConsumeIntegralInRange(0, 30);
    frame.input = NewWorld(24);
    if (data_.ConsumeBool()) {
      // Part of the layer, an empty rectangle, or one that reaches beyond the layer.
      const int32_t w = frame.input->width;
      const int32_t h = frame.input->height;
      PF_LRect rect;
      rect.left = data_.ConsumeIntegralInRange(-4, w);
      rect.top = data_.ConsumeIntegralInRange(-4, h);
      rect.right = data_.ConsumeIntegralInRange(rect.left, w + 4);
      rect.bottom = data_.ConsumeIntegralInRange(rect.top, h + 4);
      frame.request = rect;
    }
    constexpr PF_RationalScale kScales[] = {{1, 1}, {1, 2}, {1, 4}, {2, 3}};
    frame.downsampleX = PickFrom(data_, kScales);
    frame.downsampleY = PickFrom(data_, kScales);
    frame.outputRowPadding = 4 * data_.ConsumeIntegralInRange(0, 6);
    const PF_LRect r =
        frame.request.value_or(PF_LRect{0, 0, frame.input->width, frame.input->height});
    Note("smart frame " + std::to_string(frame.frame) + ", input " +
         std::to_string(frame.input->width) + "x" + std::to_string(frame.input->height) +
         ", request (" + std::to_string(r.left) + ", " + std::to_string(r.top) + ", " +
         std::to_string(r.right) + ", " + std::to_string(r.bottom) + ")");
    batch.push_back(frame);
  }
  if (batch.size() == 1) {
    const hostsim::SmartFrameResult r = host_.RenderSmart(instance, batch.front());
    Check("PF_Cmd_SMART_PRE_RENDER", r.preRenderErr);
    Check("PF_Cmd_SMART_RENDER", r.renderErr);
    return;
  }
  for (const hostsim::SmartFrameResult& r :
       host_.RenderSmartConcurrently(instance, batch, data_.ConsumeIntegralInRange(1, 3))) {
    Check("PF_Cmd_SMART_PRE_RENDER", r.preRenderErr);
    Check("PF_Cmd_SMART_RENDER", r.renderErr);
  }
}

void CommandSession::RenderLegacy() {
  // The simulated host builds the parameter array from the declared list, which holds the
  // input layer only once parameter set-up has run.
  if (host_.Params().params.empty()) return;
  hostsim::EffectInstance& instance = PickInstance();
  hostsim::LegacyFrame frame;
  frame.frame = data_.ConsumeIntegralInRange(0, 30);
  frame.input = NewWorld(24);
  frame.depth = depth_;
  if (data_.ConsumeIntegralInRange(0, 7) == 0) {
    frame.outputWidth = data_.ConsumeIntegralInRange(1, 24);
    frame.outputHeight = data_.ConsumeIntegralInRange(1, 24);
  }
  frame.outputRowPadding = 4 * data_.ConsumeIntegralInRange(0, 6);
  frame.layerWidth = data_.ConsumeBool() ? 0 : data_.ConsumeIntegralInRange(0, 48);
  if (data_.ConsumeIntegralInRange(0, 7) == 0) {
    // A format the effect does not render. (A host that reports another depth than its pixels
    // have cannot be guarded against: the effect would write the wrong pixel size.)
    constexpr PrPixelFormat kFormats[] = {PrPixelFormat_BGRA_4444_8u, PrPixelFormat_Invalid};
    frame.reportedFormat = PickFrom(data_, kFormats);
  }
  Note("legacy frame " + std::to_string(frame.frame) + ", input " +
       std::to_string(frame.input->width) + "x" + std::to_string(frame.input->height) +
       ", output " + std::to_string(frame.outputWidth) + "x" + std::to_string(frame.outputHeight));
  Check("PF_Cmd_RENDER", host_.RenderLegacy(instance, frame).err);
}

void CommandSession::CustomControlEvent() {
  hostsim::EffectInstance& instance = PickInstance();
  const int32_t id = data_.ConsumeBool() ? ToInt(ParamId::CurveGraph) : ToInt(ParamId::Header);
  PF_ParamIndex index = 0;
  try {
    index = host_.PositionOf(instance, id);
  } catch (const std::exception&) {
    index = static_cast<PF_ParamIndex>(data_.ConsumeIntegralInRange(0, 30));
  }
  const PF_EffectArea area = data_.ConsumeBool() ? PF_EA_CONTROL : PF_EA_PARAM_TITLE;
  const hostsim::EffectWindow window = hostsim::PanelWindow(
      index, area, data_.ConsumeIntegralInRange(0, 400), data_.ConsumeIntegralInRange(0, 200));
  const int32_t frame = data_.ConsumeIntegralInRange(0, 30);
  if (data_.ConsumeBool()) {
    Check("PF_Cmd_EVENT (draw)", hostsim::SendDrawEvent(host_, instance, window, frame).result.err);
  } else {
    const auto when = data_.ConsumeIntegral<A_u_long>();
    Check("PF_Cmd_EVENT (click)",
          hostsim::SendClickEvent(host_, instance, window, when, frame).result.err);
  }
}

void CommandSession::UnknownCommand() {
  const PF_Cmd cmd = data_.ConsumeBool() ? PickFrom(data_, kUnhandledCommands)
                                         : data_.ConsumeIntegralInRange<PF_Cmd>(34, 1000);
  const hostsim::EffectInstance* instance = data_.ConsumeBool() ? &PickInstance() : nullptr;
  const PF_Err err = host_.Command(cmd, instance).err;
  Note("command " + std::to_string(cmd) + " -> " + std::to_string(err));
  if (err != PF_Err_NONE) {
    problems_.push_back("command " + std::to_string(cmd) +
                        ", which the effect does not handle, "
                        "returned " +
                        std::to_string(err));
  }
}

void CommandSession::Step() {
  const int op = data_.ConsumeIntegralInRange(0, 13);
  switch (op) {
    case 0:
      ArmFault();
      return;
    case 1:
      WithholdSuite(data_.ConsumeBool());
      return;
    case 2:
      Note("clear faults");
      host_.Faults().Clear();
      return;
    case 3:
      Lifecycle();
      return;
    case 4:
    case 5:
      SequenceCommand();
      return;
    case 6:
    case 7:
      SetControl();
      return;
    case 8:
      SetIntensityLayer();
      return;
    case 9:
    case 10:
      RenderSmart();
      return;
    case 11:
      RenderLegacy();
      return;
    case 12:
      CustomControlEvent();
      return;
    default:
      UnknownCommand();
      return;
  }
}

std::vector<std::string> CommandSession::Finish() {
  host_.Faults().Clear();
  for (hostsim::EffectInstance* instance : instances_) {
    if (instance->SequenceData() != nullptr) {
      Check("PF_Cmd_SEQUENCE_SETDOWN", host_.SequenceSetdown(*instance).err);
    }
  }
  for (PF_EffectWorld* world : worlds_)
    host_.Worlds().Dispose(world);
  worlds_.clear();

  std::vector<std::string> problems = problems_;
  const hostsim::SessionReport report = host_.Report();
  if (!report.Clean()) problems.push_back(report.Describe());
  if (const size_t live = host_.Worlds().LiveCount(); live != 0) {
    problems.push_back(std::to_string(live) + " images the effect made were never disposed of");
  }
  return problems;
}

}  // namespace morvane::fuzz
