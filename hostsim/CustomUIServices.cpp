// The drawing suites and custom-UI events of the simulated host. Drawing references, suppliers
// and surfaces are tokens that are valid only while the event that handed them out runs; images
// are numbered objects that the effect must release before the event ends.
#include <deque>
#include <mutex>

#include "hostsim/CallbackEntry.h"
#include "hostsim/CustomUI.h"

namespace hostsim {
namespace {

constexpr SPErr kOk = 0;
constexpr A_u_long kContextMagic = 0x05EA771E;

// The one drawing state of the process (there is one active Host at a time).
struct DrawbotState {
  std::mutex mutex;
  DrawbotRecord record;
  const PF_Context* liveContext = nullptr;  // the event's context while it runs
  std::deque<std::size_t> imageTokens;      // one per image; its address is the image ref
  char drawToken = 0;
  char supplierToken = 0;
  char surfaceToken = 0;
};

DrawbotState& State() {
  static DrawbotState state;
  return state;
}

std::string DrawFn(const char* suite, int32_t version, const char* member) {
  return SuiteFunction(suite, version, member);
}

}  // namespace

struct CustomUIServices : CallbackEntry {
  static void Problem(const std::string& text) { Active().NoteProblem(text); }

  // --- "PF Effect Custom UI Suite" 1 -------------------------------------------------------

  static PF_Err GetDrawingReference(const PF_ContextH contextH, DRAWBOT_DrawRef* out) {
    if (const auto err = Enter(SuiteFunction(kPFEffectCustomUISuite, kPFEffectCustomUISuiteVersion1,
                                             "PF_GetDrawingReference"))) {
      return *err;
    }
    DrawbotState& state = State();
    const std::lock_guard lock(state.mutex);
    state.record.drawingReferences.push_back(contextH);
    const bool live = contextH != nullptr && *contextH != nullptr &&
                      *contextH == state.liveContext && (*contextH)->magic == kContextMagic;
    if (!live) {
      Problem("PF_GetDrawingReference called with a context that is not the event's");
      *out = nullptr;
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    *out = reinterpret_cast<DRAWBOT_DrawRef>(&state.drawToken);
    return PF_Err_NONE;
  }

  // --- "DRAWBOT Draw Suite" 1 --------------------------------------------------------------

  static bool LiveDrawRef(DrawbotState& state, DRAWBOT_DrawRef ref, const char* function) {
    if (state.liveContext != nullptr &&
        ref == reinterpret_cast<DRAWBOT_DrawRef>(&state.drawToken)) {
      return true;
    }
    Problem(std::string(function) + " called with a drawing reference that is not live");
    return false;
  }

  static SPErr GetSupplier(DRAWBOT_DrawRef ref, DRAWBOT_SupplierRef* out) {
    if (const auto err =
            Enter(DrawFn(kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1, "GetSupplier"))) {
      return *err;
    }
    DrawbotState& state = State();
    const std::lock_guard lock(state.mutex);
    *out = nullptr;
    if (!LiveDrawRef(state, ref, "GetSupplier")) return PF_Err_BAD_CALLBACK_PARAM;
    *out = reinterpret_cast<DRAWBOT_SupplierRef>(&state.supplierToken);
    return kOk;
  }

  static SPErr GetSurface(DRAWBOT_DrawRef ref, DRAWBOT_SurfaceRef* out) {
    if (const auto err =
            Enter(DrawFn(kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1, "GetSurface"))) {
      return *err;
    }
    DrawbotState& state = State();
    const std::lock_guard lock(state.mutex);
    *out = nullptr;
    if (!LiveDrawRef(state, ref, "GetSurface")) return PF_Err_BAD_CALLBACK_PARAM;
    *out = reinterpret_cast<DRAWBOT_SurfaceRef>(&state.surfaceToken);
    return kOk;
  }

  // --- "DRAWBOT Supplier Suite" 1 ----------------------------------------------------------

  static SPErr NewImageFromBuffer(DRAWBOT_SupplierRef supplier, int width, int height, int rowBytes,
                                  DRAWBOT_PixelLayout layout, const void* data,
                                  DRAWBOT_ImageRef* out) {
    if (const auto err = Enter(DrawFn(kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1,
                                      "NewImageFromBuffer"))) {
      return *err;
    }
    DrawbotState& state = State();
    const std::lock_guard lock(state.mutex);
    *out = nullptr;
    if (state.liveContext == nullptr ||
        supplier != reinterpret_cast<DRAWBOT_SupplierRef>(&state.supplierToken)) {
      Problem("NewImageFromBuffer called with a supplier that is not live");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    const int bytesPerPixel = layout <= kDRAWBOT_PixelLayout_24BGR ? 3 : 4;
    if (data == nullptr || width <= 0 || height <= 0 || rowBytes < width * bytesPerPixel ||
        layout < kDRAWBOT_PixelLayout_24RGB || layout > kDRAWBOT_PixelLayout_32BGRA_Premul) {
      Problem("NewImageFromBuffer called with an impossible image");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    DrawnImage image;
    image.width = width;
    image.height = height;
    image.rowBytes = rowBytes;
    image.layout = layout;
    const auto* bytes = static_cast<const uint8_t*>(data);
    image.pixels.assign(bytes, bytes + static_cast<std::size_t>(rowBytes) * height);
    state.record.images.push_back(std::move(image));
    state.imageTokens.push_back(state.record.images.size() - 1);
    *out = reinterpret_cast<DRAWBOT_ImageRef>(&state.imageTokens.back());
    return kOk;
  }

  // The image an object ref names, or null.
  static DrawnImage* FindImage(DrawbotState& state, const void* ref) {
    for (const std::size_t& token : state.imageTokens) {
      if (&token == ref) return &state.record.images[token];
    }
    return nullptr;
  }

  static SPErr ReleaseObject(DRAWBOT_ObjectRef object) {
    if (const auto err = Enter(
            DrawFn(kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1, "ReleaseObject"))) {
      return *err;
    }
    DrawbotState& state = State();
    const std::lock_guard lock(state.mutex);
    ++state.record.releasedObjects;
    DrawnImage* image = FindImage(state, object);
    if (image == nullptr) {
      Problem("ReleaseObject called with an object the supplier did not make");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (image->released) {
      Problem("ReleaseObject called twice for one image");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    image->released = true;
    return kOk;
  }

  // --- "DRAWBOT Surface Suite" 2 -----------------------------------------------------------

  static SPErr DrawImage(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef imageRef,
                         const DRAWBOT_PointF32* origin, float alpha) {
    if (const auto err =
            Enter(DrawFn(kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2, "DrawImage"))) {
      return *err;
    }
    DrawbotState& state = State();
    const std::lock_guard lock(state.mutex);
    if (state.liveContext == nullptr ||
        surface != reinterpret_cast<DRAWBOT_SurfaceRef>(&state.surfaceToken)) {
      Problem("DrawImage called with a surface that is not live");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    const DrawnImage* image = FindImage(state, imageRef);
    if (image == nullptr || image->released || origin == nullptr) {
      Problem("DrawImage called with an image that is not live, or without an origin");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    const auto index = static_cast<std::size_t>(image - state.record.images.data());
    state.record.draws.push_back({index, origin->x, origin->y, alpha});
    return kOk;
  }

  static constexpr PF_EffectCustomUISuite1 kCustomUISuite{GetDrawingReference};
  static constexpr DRAWBOT_DrawbotSuite1 kDrawSuite{GetSupplier, GetSurface};
  static constexpr DRAWBOT_SupplierSuite1 kSupplierSuite{
      nullptr, nullptr, nullptr, nullptr, nullptr, NewImageFromBuffer, nullptr,
      nullptr, nullptr, nullptr, nullptr, nullptr, ReleaseObject};
  static constexpr DRAWBOT_SurfaceSuite2 kSurfaceSuite{
      nullptr, nullptr,   nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
      nullptr, DrawImage, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
  // Served so that the effect can take the whole drawing set; nothing in it is called.
  static constexpr DRAWBOT_PathSuite1 kPathSuite{nullptr, nullptr, nullptr,
                                                 nullptr, nullptr, nullptr};

  static void Install(Host& host) {
    DrawbotState& state = State();
    {
      const std::lock_guard lock(state.mutex);
      state.record = DrawbotRecord{};
      state.liveContext = nullptr;
      state.imageTokens.clear();
    }
    SuiteRegistry& suites = host.Suites();
    suites.Register(kPFEffectCustomUISuite, kPFEffectCustomUISuiteVersion1, &kCustomUISuite);
    suites.Register(kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1, &kDrawSuite);
    suites.Register(kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1, &kSupplierSuite);
    suites.Register(kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2, &kSurfaceSuite);
    suites.Register(kDRAWBOT_PathSuite, kDRAWBOT_PathSuite_Version1, &kPathSuite);
  }

  // --- Events ------------------------------------------------------------------------------

  static EventAnswer SendEvent(Host& host, EffectInstance& instance, PF_EventExtra& extra,
                               int32_t frame) {
    PF_Context context{};
    context.magic = kContextMagic;
    context.w_type = PF_Window_EFFECT;
    PF_Context* contextP = &context;
    extra.contextH = &contextP;

    DrawbotState& state = State();
    std::size_t imagesBefore = 0;
    {
      const std::lock_guard lock(state.mutex);
      state.liveContext = &context;
      imagesBefore = state.record.images.size();
    }
    struct EndOfEvent {
      DrawbotState& state;
      ~EndOfEvent() {
        const std::lock_guard lock(state.mutex);
        state.liveContext = nullptr;
      }
    } end{state};

    EventAnswer answer;
    answer.result = host.UiCommand(PF_Cmd_EVENT, instance, &extra, frame);
    answer.outFlags = extra.evt_out_flags;

    const std::lock_guard lock(state.mutex);
    for (std::size_t i = imagesBefore; i < state.record.images.size(); ++i) {
      if (!state.record.images[i].released) {
        host.NoteProblem("image " + std::to_string(i) + " not released by the end of its event");
      }
    }
    return answer;
  }
};

void InstallCustomUIServices(Host& host) {
  CustomUIServices::Install(host);
}

int DrawbotRecord::LiveImages() const {
  int live = 0;
  for (const DrawnImage& image : images)
    live += image.released ? 0 : 1;
  return live;
}

const DrawnImage* DrawbotRecord::LastDrawn() const {
  return draws.empty() ? nullptr : &images[draws.back().image];
}

DrawbotRecord Drawbot(const Host& host) {
  if (Host::Active() != &host) throw std::logic_error("hostsim: Drawbot of an inactive host");
  DrawbotState& state = State();
  const std::lock_guard lock(state.mutex);
  return state.record;
}

EffectWindow PanelWindow(PF_ParamIndex index, PF_EffectArea area, int32_t width, int32_t height) {
  // Rows of the panel: a title row of 17 pixels, then the control area indented under it.
  constexpr int32_t kLeft = 8;
  constexpr int32_t kTitleHeight = 17;
  constexpr int32_t kTitleWidth = 320;
  const int32_t top = 24 * index;
  EffectWindow window;
  window.index = index;
  window.area = area;
  window.paramTitleFrame = {kLeft, top, kLeft + kTitleWidth, top + kTitleHeight};
  window.currentFrame = {kLeft + 16, top + kTitleHeight, kLeft + 16 + width,
                         top + kTitleHeight + height};
  return window;
}

std::optional<std::string> EventAnswer::ShownMessage() const {
  if (!result.ShowsMessage() || result.out.return_msg[0] == '\0') return std::nullopt;
  return result.Message();
}

namespace {

PF_EventExtra NewEvent(PF_EventType type, const EffectWindow& window) {
  PF_EventExtra extra{};
  extra.e_type = type;
  extra.effect_win.index = window.index;
  extra.effect_win.area = window.area;
  extra.effect_win.current_frame = window.currentFrame;
  extra.effect_win.param_title_frame = window.paramTitleFrame;
  extra.evt_out_flags = PF_EO_NONE;
  return extra;
}

}  // namespace

EventAnswer SendDrawEvent(Host& host, EffectInstance& instance, const EffectWindow& window,
                          int32_t frame) {
  PF_EventExtra extra = NewEvent(PF_Event_DRAW, window);
  const PF_LRect& area =
      window.area == PF_EA_PARAM_TITLE ? window.paramTitleFrame : window.currentFrame;
  extra.u.draw.update_rect = area;
  extra.u.draw.depth = 32;
  return CustomUIServices::SendEvent(host, instance, extra, frame);
}

EventAnswer SendClickEvent(Host& host, EffectInstance& instance, const EffectWindow& window,
                           A_u_long when, int32_t frame) {
  PF_EventExtra extra = NewEvent(PF_Event_DO_CLICK, window);
  extra.u.do_click.when = when;
  extra.u.do_click.screen_point = {window.currentFrame.left + 4, window.currentFrame.top + 4};
  extra.u.do_click.num_clicks = 1;
  return CustomUIServices::SendEvent(host, instance, extra, frame);
}

}  // namespace hostsim
