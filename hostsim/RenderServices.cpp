// The callbacks behind rendering and parameter values: smart-render layer
// checkouts, parameter checkouts at a time, and PF_UpdateParamUI applied to
// the instance that asks.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <string>

#include "hostsim/CallbackEntry.h"
#include "hostsim/FrameContext.h"
#include "hostsim/Host.h"

namespace hostsim {
namespace {

thread_local FrameContext* currentFrame = nullptr;

bool IsEmpty(const PF_LRect& r) {
  return r.left >= r.right || r.top >= r.bottom;
}

PF_LRect Intersect(const PF_LRect& a, const PF_LRect& b) {
  PF_LRect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
             std::min(a.bottom, b.bottom)};
  if (IsEmpty(r)) r = PF_LRect{0, 0, 0, 0};
  return r;
}

PF_LRect Bounds(const PF_EffectWorld& world) {
  return {0, 0, world.width, world.height};
}

}  // namespace

struct RenderServices : CallbackEntry {
  // Caller holds the host's mutex.
  static EffectInstance* InstanceOf(Host& host, PF_ProgPtr ref) {
    for (EffectInstance& instance : host.instances_) {
      if (reinterpret_cast<const void*>(ref) == &instance) return &instance;
    }
    return nullptr;
  }

  static bool IsFrameRef(const FrameContext& frame, PF_ProgPtr ref) {
    if (reinterpret_cast<const void*>(ref) == frame.instance) return true;
    Active().NoteProblem("a render callback called with another instance's effect_ref");
    return false;
  }

  static FrameContext* Frame(Host& host, const char* function) {
    if (currentFrame == nullptr) {
      host.NoteProblem(std::string(function) + " called outside a render command");
    }
    return currentFrame;
  }

  // The frame's own image for a layer control, else the instance's. Caller
  // holds the host's mutex.
  static const PF_EffectWorld* LayerOf(const FrameContext& frame, PF_ParamIndex index) {
    const auto own = frame.layerOverrides.find(index);
    return own != frame.layerOverrides.end() ? own->second : frame.instance->params_.Layer(index);
  }

  // --- Parameters at a time --------------------------------------------------------

  static PF_Err CheckoutParam(PF_ProgPtr ref, PF_ParamIndex index, A_long time, A_long step,
                              A_u_long /*scale*/, PF_ParamDef* param) {
    if (const auto err = Enter(Callback("inter", "checkout_param"))) return *err;
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    EffectInstance* instance = InstanceOf(host, ref);
    if (instance == nullptr && reinterpret_cast<const void*>(ref) != &host.globalRef_) {
      host.problems_.push_back("checkout_param called with an unknown effect_ref");
    }
    if (index < 0 || static_cast<size_t>(index) >= host.params_.params.size()) {
      return PF_Err_INVALID_INDEX;
    }
    if (instance != nullptr && instance->params_.Ready()) {
      const double frame = static_cast<double>(time) / (step > 0 ? step : host.profile_.timeStep);
      *param = instance->params_.DefinitionAt(index, frame);
      if (currentFrame != nullptr && currentFrame->instance == instance &&
          param->param_type == PF_Param_LAYER) {
        const PF_EffectWorld* layer =
            index == 0 ? currentFrame->input : LayerOf(*currentFrame, index);
        const A_long dephault = param->u.ld.dephault;
        std::memset(&param->u.ld, 0, sizeof param->u.ld);
        if (layer != nullptr) param->u.ld = *layer;
        param->u.ld.dephault = dephault;
      }
    } else {
      *param = host.params_.params[static_cast<size_t>(index)];
    }
    ++host.paramCheckouts_;
    return PF_Err_NONE;
  }

  static PF_Err CheckinParam(PF_ProgPtr ref, PF_ParamDef* /*param*/) {
    if (const auto err = Enter(Callback("inter", "checkin_param"))) return *err;
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    if (InstanceOf(host, ref) == nullptr &&
        reinterpret_cast<const void*>(ref) != &host.globalRef_) {
      host.problems_.push_back("checkin_param called with an unknown effect_ref");
    }
    if (host.paramCheckouts_ == 0) {
      host.problems_.push_back("checkin_param without a checkout");
    } else {
      --host.paramCheckouts_;
    }
    return PF_Err_NONE;
  }

  // PF_UpdateParamUI may change the UI flags, size and name, the twirly flag
  // and a slider's ranges and display; anything else is misuse.
  static bool OnlyUIChanged(PF_ParamDef before, PF_ParamDef after, bool premiere) {
    const PF_ParamUIFlags mutableUI =
        PF_PUI_DISABLED | PF_PUI_ECW_SEPARATOR | (premiere ? PF_PUI_INVISIBLE : 0);
    if ((before.ui_flags & ~mutableUI) != (after.ui_flags & ~mutableUI)) return false;
    after.ui_flags = before.ui_flags;
    after.ui_width = before.ui_width;
    after.ui_height = before.ui_height;
    std::memcpy(after.name, before.name, sizeof after.name);
    after.flags = (after.flags & ~PF_ParamFlag_COLLAPSE_TWIRLY) |
                  (before.flags & PF_ParamFlag_COLLAPSE_TWIRLY);
    after.uu = before.uu;
    if (before.param_type == PF_Param_FLOAT_SLIDER) {
      PF_FloatSliderDef& a = after.u.fs_d;
      const PF_FloatSliderDef& b = before.u.fs_d;
      a.valid_min = b.valid_min;
      a.valid_max = b.valid_max;
      a.slider_min = b.slider_min;
      a.slider_max = b.slider_max;
      a.precision = b.precision;
      a.display_flags = b.display_flags;
    }
    return std::memcmp(&before, &after, sizeof before) == 0;
  }

  static PF_Err UpdateParamUI(PF_ProgPtr ref, PF_ParamIndex index, const PF_ParamDef* def) {
    if (const auto err = Enter(
            SuiteFunction(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, "PF_UpdateParamUI"))) {
      return *err;
    }
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    EffectInstance* instance = InstanceOf(host, ref);
    if (index <= 0 || static_cast<size_t>(index) >= host.params_.params.size()) {
      return PF_Err_INVALID_INDEX;
    }
    host.params_.uiUpdates.push_back({index, *def});
    if (instance == nullptr) {
      host.problems_.push_back("PF_UpdateParamUI outside an instance");
      return PF_Err_NONE;
    }
    if (instance->params_.Ready()) {
      const PF_ParamDef shown = instance->params_.DefinitionAt(index, 0.0);
      PF_ParamDef asked = *def;
      // The value is the effect's copy of the current one; compare the rest.
      asked.u = shown.u;
      if (!OnlyUIChanged(shown, asked, host.profile_.IsPremiere())) {
        host.problems_.push_back("PF_UpdateParamUI for parameter " + std::to_string(index) +
                                 " changes more than its UI");
      }
      instance->params_.SetUIFlags(index, def->ui_flags);
    }
    return PF_Err_NONE;
  }

  // --- Smart render ----------------------------------------------------------------

  static PF_Err CheckoutLayer(PF_ProgPtr ref, PF_ParamIndex index, A_long checkoutId,
                              const PF_RenderRequest* request, A_long /*time*/, A_long /*step*/,
                              A_u_long /*scale*/, PF_CheckoutResult* result) {
    if (const auto err = Enter(Callback("prerender", "checkout_layer"))) return *err;
    Host& host = Active();
    FrameContext* frame = Frame(host, "checkout_layer");
    if (frame == nullptr || !IsFrameRef(*frame, ref)) return PF_Err_BAD_CALLBACK_PARAM;
    const PF_EffectWorld* layer = nullptr;
    if (index == 0) {
      layer = frame->input;
    } else {
      const std::lock_guard lock(host.mutex_);
      const InstanceParams& params = frame->instance->params_;
      if (index < 0 || static_cast<size_t>(index) >= params.Count() ||
          params.Declared(index).param_type != PF_Param_LAYER) {
        host.problems_.push_back("checkout_layer of parameter " + std::to_string(index) +
                                 ", which is not a layer");
        return PF_Err_BAD_CALLBACK_PARAM;
      }
      layer = LayerOf(*frame, index);
    }
    if (checkoutId < 0 || frame->requests.contains(checkoutId)) {
      host.NoteProblem("checkout_layer with checkout id " + std::to_string(checkoutId) +
                       " that is negative or already used");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    frame->requests[checkoutId] = {index, *request};
    std::memset(result, 0, sizeof *result);
    result->par = {1, 1};
    if (layer != nullptr) {
      result->result_rect = Intersect(request->rect, Bounds(*layer));
      result->max_result_rect = Bounds(*layer);
      result->ref_width = layer->width;
      result->ref_height = layer->height;
    }
    return PF_Err_NONE;
  }

  static PF_Err GuidMixIn(PF_ProgPtr /*ref*/, A_u_long /*size*/, const void* /*buf*/) {
    if (const auto err = Enter(Callback("prerender", "GuidMixInPtr"))) return *err;
    return PF_Err_NONE;
  }

  // A host-owned copy of `area` of `source` whose origin is the area's corner.
  static PF_EffectWorld* CopyOf(Host& host, const PF_EffectWorld& source, PF_LRect area) {
    const std::optional<PixelDepth> depth = host.worlds_.Depth(&source);
    const PixelDepth d = depth.value_or(PixelDepth::Bits8);
    area = Intersect(area, Bounds(source));
    PF_EffectWorld* copy =
        host.worlds_.Create(area.right - area.left, area.bottom - area.top, d, 8);
    const size_t rowBytes = static_cast<size_t>(copy->width) * PixelBytes(d);
    for (A_long y = 0; y < copy->height; ++y) {
      const auto* from = reinterpret_cast<const uint8_t*>(source.data) +
                         static_cast<ptrdiff_t>(y + area.top) * source.rowbytes +
                         static_cast<ptrdiff_t>(area.left) * PixelBytes(d);
      auto* to =
          reinterpret_cast<uint8_t*>(copy->data) + static_cast<ptrdiff_t>(y) * copy->rowbytes;
      std::memcpy(to, from, rowBytes);
    }
    copy->origin_x = area.left;
    copy->origin_y = area.top;
    if (const auto ae = host.worlds_.AeFormat(&source)) {
      host.worlds_.OverrideFormats(copy, *ae, host.worlds_.PremiereFormat(&source).value());
    }
    return copy;
  }

  static PF_Err CheckoutLayerPixels(PF_ProgPtr ref, A_long checkoutId, PF_EffectWorld** pixels) {
    if (const auto err = Enter(Callback("smartrender", "checkout_layer_pixels"))) return *err;
    Host& host = Active();
    FrameContext* frame = Frame(host, "checkout_layer_pixels");
    if (frame == nullptr || !IsFrameRef(*frame, ref)) return PF_Err_BAD_CALLBACK_PARAM;
    const auto asked = frame->requests.find(checkoutId);
    if (asked == frame->requests.end()) {
      host.NoteProblem("checkout_layer_pixels of checkout id " + std::to_string(checkoutId) +
                       " that pre-render did not ask for");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (frame->pixels.contains(checkoutId)) {
      host.NoteProblem("checkout id " + std::to_string(checkoutId) + " checked out twice");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    PF_EffectWorld* world = nullptr;
    if (asked->second.index == 0) {
      // The input covers exactly what was asked for.
      world = CopyOf(host, *frame->input, asked->second.request.rect);
    } else {
      const PF_EffectWorld* layer = nullptr;
      {
        const std::lock_guard lock(host.mutex_);
        layer = LayerOf(*frame, asked->second.index);
      }
      // Another layer is handed over whole, at its own size.
      if (layer != nullptr) world = CopyOf(host, *layer, Bounds(*layer));
    }
    frame->pixels[checkoutId] = world;
    {
      const std::lock_guard lock(host.mutex_);
      ++host.pixelCheckouts_;
    }
    *pixels = world;
    return PF_Err_NONE;
  }

  static PF_Err CheckinLayerPixels(PF_ProgPtr ref, A_long checkoutId) {
    if (const auto err = Enter(Callback("smartrender", "checkin_layer_pixels"))) return *err;
    Host& host = Active();
    FrameContext* frame = Frame(host, "checkin_layer_pixels");
    if (frame == nullptr || !IsFrameRef(*frame, ref)) return PF_Err_BAD_CALLBACK_PARAM;
    const auto out = frame->pixels.find(checkoutId);
    if (out == frame->pixels.end()) {
      host.NoteProblem("checkin_layer_pixels of checkout id " + std::to_string(checkoutId) +
                       " that is not checked out");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (out->second != nullptr) host.worlds_.Dispose(out->second);
    frame->pixels.erase(out);
    const std::lock_guard lock(host.mutex_);
    --host.pixelCheckouts_;
    return PF_Err_NONE;
  }

  static PF_Err CheckoutOutput(PF_ProgPtr ref, PF_EffectWorld** output) {
    if (const auto err = Enter(Callback("smartrender", "checkout_output"))) return *err;
    Host& host = Active();
    FrameContext* frame = Frame(host, "checkout_output");
    if (frame == nullptr || !IsFrameRef(*frame, ref)) return PF_Err_BAD_CALLBACK_PARAM;
    *output = frame->output;
    return PF_Err_NONE;
  }

  // Whatever the effect left checked out at the end of a frame is noted and freed.
  static void CloseFrame(Host& host, FrameContext& frame) {
    for (const auto& [id, world] : frame.pixels) {
      host.NoteProblem("checkout id " + std::to_string(id) +
                       " not checked in by the end of the frame");
      if (world != nullptr) host.worlds_.Dispose(world);
      const std::lock_guard lock(host.mutex_);
      --host.pixelCheckouts_;
    }
    frame.pixels.clear();
  }

  static void Install(Host& host) {
    host.inter_.checkout_param = CheckoutParam;
    host.inter_.checkin_param = CheckinParam;
    host.suites_.Register(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, &kParamUtilsSuite);
  }

  static constexpr PF_ParamUtilsSuite3 kParamUtilsSuite{
      UpdateParamUI, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
  static constexpr PF_PreRenderCallbacks kPreRenderCallbacks{CheckoutLayer, GuidMixIn};
  static constexpr PF_SmartRenderCallbacks kSmartRenderCallbacks{
      CheckoutLayerPixels, CheckinLayerPixels, CheckoutOutput};
};

FrameScope::FrameScope(FrameContext& context) : previous_(currentFrame) {
  currentFrame = &context;
}
FrameScope::~FrameScope() {
  currentFrame = previous_;
}
FrameContext* CurrentFrame() {
  return currentFrame;
}

PF_PreRenderCallbacks* PreRenderCallbacks() {
  static PF_PreRenderCallbacks callbacks = RenderServices::kPreRenderCallbacks;
  return &callbacks;
}
PF_SmartRenderCallbacks* SmartRenderCallbacks() {
  static PF_SmartRenderCallbacks callbacks = RenderServices::kSmartRenderCallbacks;
  return &callbacks;
}
void CloseFrame(Host& host, FrameContext& frame) {
  RenderServices::CloseFrame(host, frame);
}
void InstallRenderServices(Host& host) {
  RenderServices::Install(host);
}

}  // namespace hostsim
