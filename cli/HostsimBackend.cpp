// The render backend on the simulated host: the module is loaded, registered
// and set up exactly as a host does, one effect instance carries the controls,
// and frames go through the smart render (After Effects profiles) or the
// single-call render (Premiere).
#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "cli/Errors.h"
#include "cli/RenderBackend.h"
#include "hostsim/Host.h"
#include "sdk/FixedDegrees.h"

namespace morvane::cli {

namespace fs = std::filesystem;

namespace {

hostsim::HostProfile SimulatedProfile(HostProfile profile) {
  switch (profile) {
    case HostProfile::Ae:
      return hostsim::HostProfile::AfterEffects();
    case HostProfile::Ae1323:
      return hostsim::HostProfile::AfterEffects13_23();
    case HostProfile::Ae138:
      return hostsim::HostProfile::OlderHost();
    case HostProfile::Premiere:
      break;
  }
  return hostsim::HostProfile::Premiere();
}

hostsim::PixelDepth SimulatedDepth(Depth depth) {
  switch (depth) {
    case Depth::Depth8:
      return hostsim::PixelDepth::Bits8;
    case Depth::Depth16:
      return hostsim::PixelDepth::Bits16;
    case Depth::Depth32f:
      break;
  }
  return hostsim::PixelDepth::Float32;
}

// Rows of images handed to the effect are padded, as a host's often are.
constexpr int32_t kRowPadding = 16;

struct FlagName {
  uint32_t bit;
  const char* name;
};

constexpr FlagName kOutFlags[] = {
    {PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING, "SEQUENCE_DATA_NEEDS_FLATTENING"},
    {PF_OutFlag_I_DO_DIALOG, "I_DO_DIALOG"},
    {PF_OutFlag_DISPLAY_ERROR_MESSAGE, "DISPLAY_ERROR_MESSAGE"},
    {PF_OutFlag_PIX_INDEPENDENT, "PIX_INDEPENDENT"},
    {PF_OutFlag_CUSTOM_UI, "CUSTOM_UI"},
    {PF_OutFlag_REFRESH_UI, "REFRESH_UI"},
    {PF_OutFlag_FORCE_RERENDER, "FORCE_RERENDER"},
    {PF_OutFlag_DEEP_COLOR_AWARE, "DEEP_COLOR_AWARE"},
    {PF_OutFlag_SEND_UPDATE_PARAMS_UI, "SEND_UPDATE_PARAMS_UI"},
};

constexpr FlagName kOutFlags2[] = {
    {PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG, "PARAM_GROUP_START_COLLAPSED_FLAG"},
    {PF_OutFlag2_I_AM_THREADSAFE, "I_AM_THREADSAFE"},
    {PF_OutFlag2_SUPPORTS_SMART_RENDER, "SUPPORTS_SMART_RENDER"},
    {PF_OutFlag2_FLOAT_COLOR_AWARE, "FLOAT_COLOR_AWARE"},
    {PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA, "SUPPORTS_GET_FLATTENED_SEQUENCE_DATA"},
    {PF_OutFlag2_CUSTOM_UI_ASYNC_MANAGER, "CUSTOM_UI_ASYNC_MANAGER"},
    {PF_OutFlag2_SUPPORTS_THREADED_RENDERING, "SUPPORTS_THREADED_RENDERING"},
    {PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER, "MUTABLE_RENDER_SEQUENCE_DATA_SLOWER"},
};

template <std::size_t N>
std::vector<std::string> FlagNames(uint32_t value, const FlagName (&table)[N]) {
  std::vector<std::string> names;
  uint32_t known = 0;
  for (const FlagName& flag : table) {
    known |= flag.bit;
    if ((value & flag.bit) != 0) names.push_back(flag.name);
  }
  if ((value & ~known) != 0) names.push_back("unknown bits");
  return names;
}

// The host's version word: major, minor, fix, stage and build.
std::string VersionText(uint32_t word) {
  static constexpr const char* kStages[] = {"development", "alpha", "beta", "release"};
  std::ostringstream text;
  text << (word >> 19) << "." << ((word >> 15) & 0xF) << "." << ((word >> 11) & 0xF) << " ("
       << kStages[(word >> 9) & 0x3] << ", build " << (word & 0x1FF) << ")";
  return text.str();
}

std::vector<std::string> SplitItems(const char* names) {
  std::vector<std::string> items;
  if (names == nullptr) return items;
  std::string item;
  std::istringstream in(names);
  while (std::getline(in, item, '|'))
    items.push_back(item);
  return items;
}

ControlDescription SpecOf(const PF_ParamDef& def, int32_t position) {
  ControlDescription control;
  control.id = def.uu.id;
  control.position = position;
  control.name = def.name;
  switch (def.param_type) {
    case PF_Param_POPUP:
      control.type = ControlType::Popup;
      control.items = SplitItems(def.u.pd.u.namesptr);
      control.defaultValue = def.u.pd.dephault;
      break;
    case PF_Param_FLOAT_SLIDER:
      control.type = ControlType::Slider;
      control.validMin = def.u.fs_d.valid_min;
      control.validMax = def.u.fs_d.valid_max;
      control.defaultValue = def.u.fs_d.dephault;
      control.precision = def.u.fs_d.precision;
      control.percent = (def.u.fs_d.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
      break;
    case PF_Param_ANGLE:
      control.type = ControlType::Angle;
      control.defaultValue = DegreesFromFixed(def.u.ad.dephault);
      break;
    case PF_Param_CHECKBOX:
      control.type = ControlType::Checkbox;
      control.defaultValue = def.u.bd.dephault;
      break;
    case PF_Param_LAYER:
      control.type = ControlType::Layer;
      break;
    default:
      control.type = ControlType::Custom;
      break;
  }
  return control;
}

// Host values of a setting in the units the simulated host takes: angles in
// degrees (exact, so the host's rounding gives the 16.16 value back).
double HostUnits(const ControlSetting& setting, double value) {
  return setting.type == ControlType::Angle ? DegreesFromFixed(static_cast<int32_t>(value)) : value;
}

// A world of the host holding `image`; disposed of at the end of the scope.
class ScopedWorld {
 public:
  ScopedWorld(hostsim::WorldStore& store, const ArgbImage& image) : store_(store) {
    world_ =
        store.Create(image.width(), image.height(), SimulatedDepth(image.depth()), kRowPadding);
    std::visit(
        [this](const auto& pixels) {
          const std::size_t rowBytes = sizeof(pixels.values[0]) * 4 * std::size_t(pixels.width);
          auto* base = reinterpret_cast<uint8_t*>(world_->data);
          for (int32_t y = 0; y < pixels.height; ++y) {
            std::memcpy(base + std::size_t(world_->rowbytes) * y, pixels.Row(y), rowBytes);
          }
        },
        image.pixels);
  }
  ScopedWorld(const ScopedWorld&) = delete;
  ScopedWorld& operator=(const ScopedWorld&) = delete;
  ~ScopedWorld() { store_.Dispose(world_); }
  const PF_EffectWorld* get() const { return world_; }

 private:
  hostsim::WorldStore& store_;
  PF_EffectWorld* world_ = nullptr;
};

template <typename Channel>
ArgbImage ImageFrom(const hostsim::Image& out) {
  Pixels<Channel> pixels(out.width, out.height);
  const std::size_t rowBytes = sizeof(Channel) * 4 * std::size_t(out.width);
  for (int32_t y = 0; y < out.height; ++y) {
    std::memcpy(pixels.Row(y), out.bytes.data() + std::size_t(out.rowbytes) * y, rowBytes);
  }
  return ArgbImage{std::move(pixels)};
}

ArgbImage ImageFrom(const hostsim::Image& out) {
  switch (out.depth) {
    case hostsim::PixelDepth::Bits8:
      return ImageFrom<uint8_t>(out);
    case hostsim::PixelDepth::Bits16:
      return ImageFrom<uint16_t>(out);
    case hostsim::PixelDepth::Float32:
      break;
  }
  return ImageFrom<float>(out);
}

std::string RenderError(int32_t frame, const char* command, PF_Err err,
                        const std::string& message) {
  return "the effect failed to render frame " + std::to_string(frame) + ": " + command +
         " returned error " + std::to_string(err) + (message.empty() ? "" : " (" + message + ")");
}

class HostsimBackend final : public RenderBackend {
 public:
  HostsimBackend(const fs::path& modulePath, HostProfile profile)
      : profile_(profile), host_(SimulatedProfile(profile)) {
    const std::string what = "cannot load the effect module '" + modulePath.string() + "': ";
    std::error_code ec;
    if (!fs::exists(modulePath, ec)) throw Failure(what + "no such file");
    try {
      host_.Load(modulePath);
    } catch (const std::exception& e) {
      throw Failure(what + e.what());
    }
    Check(what + "registration", host_.Register());
    Check(what + "global set-up", host_.GlobalSetup().err);
    Check(what + "parameter set-up", host_.ParamsSetup().err);
    instance_ = &host_.NewInstance();
    Check(what + "sequence set-up", host_.SequenceSetup(*instance_).err);
    // Like After Effects, the host offers its threads to each frame's render.
    host_.SetRenderThreads(int(std::max(1u, std::thread::hardware_concurrency())));
    FillInfo();
    info_.path = modulePath.string();
  }

  ~HostsimBackend() override {
    host_.SequenceSetdown(*instance_);
    host_.GlobalSetdown();
  }

  const ModuleInfo& Info() const override { return info_; }
  HostProfile Profile() const override { return profile_; }

  void SetControls(std::span<const ControlSetting> controls) override {
    for (const ControlSetting& setting : controls) {
      try {
        if (setting.animated) {
          std::vector<hostsim::Keyframe> keys;
          for (const Keyframe& key : setting.keys) {
            keys.push_back({double(key.frame), HostUnits(setting, key.value)});
          }
          host_.SetKeyframes(*instance_, setting.id, std::move(keys));
        } else {
          host_.SetValue(*instance_, setting.id, HostUnits(setting, setting.keys.at(0).value));
        }
      } catch (const std::exception& e) {
        throw Failure("the host refused \"" + setting.name + "\": " + e.what());
      }
    }
  }

  ArgbImage Render(const FrameRequest& request) override {
    const ScopedWorld input(host_.Worlds(), *request.input);
    std::optional<ScopedWorld> layer;
    std::vector<hostsim::FrameLayer> layers;
    if (request.intensitySource != nullptr) {
      layer.emplace(host_.Worlds(), *request.intensitySource);
      layers.push_back({intensitySourceId_, layer->get()});
    }
    if (profile_ == HostProfile::Premiere) {
      hostsim::LegacyFrame frame;
      frame.frame = request.frame;
      frame.input = input.get();
      frame.depth = SimulatedDepth(request.input->depth());
      frame.outputRowPadding = kRowPadding;
      frame.layerWidth = request.fullWidth > 0 ? request.fullWidth : request.input->width();
      frame.layers = std::move(layers);
      const hostsim::LegacyFrameResult result = host_.RenderLegacy(*instance_, frame);
      if (result.err != PF_Err_NONE) {
        throw Failure(RenderError(request.frame, "PF_Cmd_RENDER", result.err, result.message));
      }
      return ImageFrom(result.output);
    }
    hostsim::SmartFrame frame;
    frame.frame = request.frame;
    frame.input = input.get();
    if (request.region) {
      const Rect& r = *request.region;
      frame.request = PF_LRect{r.x, r.y, r.x + r.width, r.y + r.height};
    }
    frame.downsampleX = frame.downsampleY = PF_RationalScale{1, A_u_long(request.downsample)};
    frame.outputRowPadding = kRowPadding;
    frame.layers = std::move(layers);
    const hostsim::SmartFrameResult result = host_.RenderSmart(*instance_, frame);
    if (result.preRenderErr != PF_Err_NONE) {
      throw Failure(RenderError(request.frame, "PF_Cmd_SMART_PRE_RENDER", result.preRenderErr,
                                result.message));
    }
    if (result.renderErr != PF_Err_NONE || !result.rendered) {
      throw Failure(
          RenderError(request.frame, "PF_Cmd_SMART_RENDER", result.renderErr, result.message));
    }
    return ImageFrom(result.output);
  }

  CurveGraphPicture CurveGraph() override { return DrawCurveGraph(host_, *instance_); }

 private:
  static void Check(const std::string& what, PF_Err err) {
    if (err != PF_Err_NONE) throw Failure(what + " failed with error " + std::to_string(err));
  }

  void FillInfo() {
    const hostsim::Registration& reg = host_.Registered();
    info_.name = reg.name;
    info_.category = reg.category;
    info_.matchName = reg.matchName;
    const hostsim::GlobalSetupRecord& global = host_.Global();
    info_.version = VersionText(uint32_t(global.version));
    info_.outFlags = uint32_t(global.outFlags);
    info_.outFlags2 = uint32_t(global.outFlags2);
    info_.outFlagNames = FlagNames(info_.outFlags, kOutFlags);
    info_.outFlag2Names = FlagNames(info_.outFlags2, kOutFlags2);
    const hostsim::ParamList list = host_.Params();
    for (std::size_t i = 1; i < list.params.size(); ++i) {
      info_.controls.push_back(SpecOf(list.params[i], int32_t(i)));
      if (info_.controls.back().type == ControlType::Layer && intensitySourceId_ == 0) {
        intensitySourceId_ = info_.controls.back().id;
      }
    }
  }

  HostProfile profile_;
  hostsim::Host host_;
  hostsim::EffectInstance* instance_ = nullptr;
  ModuleInfo info_;
  int32_t intensitySourceId_ = 0;
};

}  // namespace

std::unique_ptr<RenderBackend> OpenRenderBackend(const fs::path& modulePath, HostProfile profile) {
  try {
    return std::make_unique<HostsimBackend>(modulePath, profile);
  } catch (const std::logic_error& e) {
    throw Failure("cannot start the simulated host: " + std::string(e.what()));
  }
}

}  // namespace morvane::cli
