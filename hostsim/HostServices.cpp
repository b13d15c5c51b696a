// The callbacks and suite functions the simulated host hands to the effect.
// Each one records its call, applies any injected fault and then does what the
// real host does, on the active Host's bookkeeping.
#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "hostsim/CallbackEntry.h"
#include "hostsim/Host.h"

namespace hostsim {

namespace {
constexpr SPErr kOk = 0;
}  // namespace

struct HostServices : CallbackEntry {
  static void CheckRef(PF_ProgPtr ref, const char* function) {
    Host& host = Active();
    const auto* raw = reinterpret_cast<const char*>(ref);
    if (raw == &host.globalRef_) return;
    const std::lock_guard lock(host.mutex_);
    for (const EffectInstance& instance : host.instances_) {
      if (raw == reinterpret_cast<const char*>(&instance)) return;
    }
    host.problems_.push_back(std::string(function) + " called with an unknown effect_ref");
  }

  // --- Basic suite ---------------------------------------------------------------

  static SPErr AcquireSuite(const char* name, int32 version, const void** suite) {
    Host& host = Active();
    host.calls_.Record(Callback("basic", "AcquireSuite"));
    return host.suites_.Acquire(name, version, suite, host.faults_);
  }

  static SPErr ReleaseSuite(const char* name, int32 version) {
    if (const auto err = Enter(Callback("basic", "ReleaseSuite"))) return *err;
    return Active().suites_.Release(name, version);
  }

  static SPBoolean IsEqual(const char* a, const char* b) {
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0;
  }

  static SPErr AllocateBlock(size_t size, void** block) {
    if (const auto err = Enter(Callback("basic", "AllocateBlock"))) return *err;
    *block = std::malloc(size);
    return *block != nullptr ? kOk : PF_Err_OUT_OF_MEMORY;
  }

  static SPErr FreeBlock(void* block) {
    std::free(block);
    return kOk;
  }

  static SPErr ReallocateBlock(void* block, size_t size, void** out) {
    if (const auto err = Enter(Callback("basic", "ReallocateBlock"))) return *err;
    void* moved = std::realloc(block, size);
    if (moved == nullptr) return PF_Err_OUT_OF_MEMORY;
    *out = moved;
    return kOk;
  }

  static SPErr Undefined() { return SuiteRegistry::kSuiteNotFound; }

  // --- Handles (utility callbacks and "PF Handle Suite" 2 share them) -----------------

  static PF_Handle NewHandle(const std::string& fn, A_u_longlong size) {
    if (Enter(fn)) return nullptr;
    return Active().handles_.New(static_cast<size_t>(size));
  }
  static void* LockHandle(const std::string& fn, PF_Handle h) {
    if (Enter(fn)) return nullptr;
    return Active().handles_.Lock(h);
  }
  static void UnlockHandle(const std::string& fn, PF_Handle h) {
    if (Enter(fn)) return;
    Active().handles_.Unlock(h);
  }
  static void DisposeHandle(const std::string& fn, PF_Handle h) {
    if (Enter(fn)) return;
    Active().handles_.Dispose(h);
  }
  static A_u_longlong HandleSize(const std::string& fn, PF_Handle h) {
    if (Enter(fn)) return 0;
    return Active().handles_.Size(h);
  }
  static PF_Err ResizeHandle(const std::string& fn, A_u_longlong size, PF_Handle* h) {
    if (const auto err = Enter(fn)) return *err;
    if (h == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    return Active().handles_.Resize(*h, static_cast<size_t>(size)) ? PF_Err_NONE
                                                                   : PF_Err_BAD_CALLBACK_PARAM;
  }

  static std::string Utils(const char* member) { return Callback("utils", member); }
  static std::string HandleFn(const char* member) {
    return SuiteFunction(kPFHandleSuite, kPFHandleSuiteVersion1, member);
  }

  // The handle functions, served twice under their own names: as utility callbacks and as the
  // handle suite.
  template <std::string (*Name)(const char*)>
  struct Handles {
    static PF_Handle New(A_HandleSize size) { return NewHandle(Name("host_new_handle"), size); }
    static void* Lock(PF_Handle h) { return LockHandle(Name("host_lock_handle"), h); }
    static void Unlock(PF_Handle h) { UnlockHandle(Name("host_unlock_handle"), h); }
    static void Dispose(PF_Handle h) { DisposeHandle(Name("host_dispose_handle"), h); }
    static A_HandleSize Size(PF_Handle h) { return HandleSize(Name("host_get_handle_size"), h); }
    static PF_Err Resize(A_HandleSize size, PF_Handle* h) {
      return ResizeHandle(Name("host_resize_handle"), size, h);
    }
  };
  using UtilsHandles = Handles<&Utils>;
  using SuiteHandles = Handles<&HandleFn>;

  // --- String callbacks ------------------------------------------------------------

  // The host formats without knowing the destination's size; every destination
  // the interface defines holds at most PF_MAX_EFFECT_MSG_LEN characters.
  static int Sprintf(A_char* dst, const A_char* format, ...) {
    if (const auto err = Enter(Utils("sprintf"))) return -1;
    char text[PF_MAX_EFFECT_MSG_LEN + 1];
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    if (n > PF_MAX_EFFECT_MSG_LEN) {
      Active().NoteProblem("sprintf produced " + std::to_string(n) + " characters, more than " +
                           std::to_string(PF_MAX_EFFECT_MSG_LEN));
    }
    std::memcpy(dst, text, std::strlen(text) + 1);
    return n;
  }

  static A_char* Strcpy(A_char* dst, const A_char* src) {
    if (Enter(Utils("strcpy"))) return dst;
    return std::strcpy(dst, src);
  }

  // --- Interaction callbacks ---------------------------------------------------------

  static PF_Err AddParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDefPtr def) {
    if (const auto err = Enter(Callback("inter", "add_param"))) return *err;
    CheckRef(ref, "add_param");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    if (index != -1) host.problems_.push_back("add_param at index " + std::to_string(index));
    host.params_.params.push_back(*def);
    return PF_Err_NONE;
  }

  static PF_Err RegisterUI(PF_ProgPtr ref, PF_CustomUIInfo* info) {
    if (const auto err = Enter(Callback("inter", "register_ui"))) return *err;
    CheckRef(ref, "register_ui");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    const auto index = static_cast<PF_ParamIndex>(host.params_.params.size()) - 1;
    host.params_.customUIs.push_back({index, *info});
    return PF_Err_NONE;
  }

  static PF_Err CheckoutParam(PF_ProgPtr ref, PF_ParamIndex index, A_long /*time*/, A_long /*step*/,
                              A_u_long /*scale*/, PF_ParamDef* param) {
    if (const auto err = Enter(Callback("inter", "checkout_param"))) return *err;
    CheckRef(ref, "checkout_param");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    if (index < 0 || static_cast<size_t>(index) >= host.params_.params.size()) {
      return PF_Err_INVALID_INDEX;
    }
    *param = host.params_.params[static_cast<size_t>(index)];
    ++host.paramCheckouts_;
    return PF_Err_NONE;
  }

  static PF_Err CheckinParam(PF_ProgPtr ref, PF_ParamDef* /*param*/) {
    if (const auto err = Enter(Callback("inter", "checkin_param"))) return *err;
    CheckRef(ref, "checkin_param");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    --host.paramCheckouts_;
    return PF_Err_NONE;
  }

  // PF_Interrupt_CANCEL once the calls allowed by CancelRenders are used up.
  static PF_Err Abort(PF_ProgPtr ref) {
    if (const auto err = Enter(Callback("inter", "abort"))) return *err;
    CheckRef(ref, "abort");
    std::atomic<int>& left = Active().abortsBeforeCancel_;
    int n = left.load();
    while (n > 0 && !left.compare_exchange_weak(n, n - 1)) {
    }
    return n == 0 ? PF_Interrupt_CANCEL : PF_Err_NONE;
  }

  // Hands out the iterations one at a time to the calling thread (thread 0) and to threads
  // started for this call, and returns the first error any call gave once all have returned.
  static PF_Err IterateGeneric(A_long iterations, void* refcon,
                               PF_Err (*fn)(void* refcon, A_long thread, A_long i,
                                            A_long iterations)) {
    if (const auto err = Enter(Utils("iterate_generic"))) return *err;
    const int threads = std::max(1, Active().renderThreads_.load());
    if (iterations == PF_Iterations_ONCE_PER_PROCESSOR) iterations = threads;
    if (fn == nullptr || iterations < 0) return PF_Err_BAD_CALLBACK_PARAM;
    std::atomic<A_long> next{0};
    std::atomic<PF_Err> first{PF_Err_NONE};
    const auto work = [&](A_long thread) {
      for (A_long i = next.fetch_add(1); i < iterations; i = next.fetch_add(1)) {
        const PF_Err err = fn(refcon, thread, i, iterations);
        PF_Err none = PF_Err_NONE;
        if (err != PF_Err_NONE) first.compare_exchange_strong(none, err);
      }
    };
    std::vector<std::thread> workers;
    for (A_long t = 1; t < std::min<A_long>(threads, iterations); ++t)
      workers.emplace_back(work, t);
    work(0);
    for (std::thread& worker : workers)
      worker.join();
    return first.load();
  }

  static PF_Err Progress(PF_ProgPtr ref, A_long /*current*/, A_long /*total*/) {
    if (const auto err = Enter(Callback("inter", "progress"))) return *err;
    CheckRef(ref, "progress");
    return PF_Err_NONE;
  }

  // --- Registration ---------------------------------------------------------------

  static A_Err Register(PF_PluginDataPtr inPtr, const A_u_char* name, const A_u_char* matchName,
                        const A_u_char* category, const A_u_char* entryPoint, A_long kind,
                        A_long apiMajor, A_long apiMinor, A_long reservedInfo) {
    if (const auto err = Enter(Callback("registration", "PF_PluginDataCB"))) return *err;
    Host& host = Active();
    auto text = [](const A_u_char* s) {
      return s != nullptr ? std::string(reinterpret_cast<const char*>(s)) : std::string();
    };
    Registration& r = host.registration_;
    ++r.calls;
    r.matchedHostPointer = reinterpret_cast<const void*>(inPtr) == &host.registration_;
    r.name = text(name);
    r.matchName = text(matchName);
    r.category = text(category);
    r.entryPoint = text(entryPoint);
    r.kind = kind;
    r.apiVersionMajor = apiMajor;
    r.apiVersionMinor = apiMinor;
    r.reservedInfo = reservedInfo;
    return A_Err_NONE;
  }

  // --- Suites ------------------------------------------------------------------------

  static std::string PixelFormatFn(const char* member) {
    return SuiteFunction(kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, member);
  }

  static PF_Err AddSupportedPixelFormat(PF_ProgPtr ref, PrPixelFormat format) {
    if (const auto err = Enter(PixelFormatFn("AddSupportedPixelFormat"))) return *err;
    CheckRef(ref, "AddSupportedPixelFormat");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    host.pixelFormats_.supported.push_back(format);
    return PF_Err_NONE;
  }

  static PF_Err ClearSupportedPixelFormats(PF_ProgPtr ref) {
    if (const auto err = Enter(PixelFormatFn("ClearSupportedPixelFormats"))) return *err;
    CheckRef(ref, "ClearSupportedPixelFormats");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    ++host.pixelFormats_.clears;
    host.pixelFormats_.supported.clear();
    return PF_Err_NONE;
  }

  static PF_Err PremiereGetPixelFormat(PF_EffectWorld* world, PrPixelFormat* format) {
    if (const auto err = Enter(PixelFormatFn("GetPixelFormat"))) return *err;
    const auto known = Active().worlds_.PremiereFormat(world);
    if (!known) return PF_Err_BAD_CALLBACK_PARAM;
    *format = *known;
    return PF_Err_NONE;
  }

  static PF_Err EffectWantsCheckedOutFramesToMatchRenderPixelFormat(PF_ProgPtr ref) {
    if (const auto err =
            Enter(SuiteFunction(kPFUtilitySuite, kPFUtilitySuiteVersion4,
                                "EffectWantsCheckedOutFramesToMatchRenderPixelFormat"))) {
      return *err;
    }
    CheckRef(ref, "EffectWantsCheckedOutFramesToMatchRenderPixelFormat");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    host.pixelFormats_.checkedOutFramesMatchRenderFormat = true;
    return PF_Err_NONE;
  }

  static std::string WorldFn(const char* member) {
    return SuiteFunction(kPFWorldSuite, kPFWorldSuiteVersion2, member);
  }

  static PF_Err NewWorld(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean /*clear*/,
                         PF_PixelFormat format, PF_EffectWorld* world) {
    if (const auto err = Enter(WorldFn("PF_NewWorld"))) return *err;
    CheckRef(ref, "PF_NewWorld");
    for (const PixelDepth depth : {PixelDepth::Bits8, PixelDepth::Bits16, PixelDepth::Float32}) {
      if (AeFormatOf(depth) == format) {
        if (width < 0 || height < 0) return PF_Err_BAD_CALLBACK_PARAM;
        Active().worlds_.Allocate(world, width, height, depth);
        return PF_Err_NONE;
      }
    }
    return PF_Err_BAD_CALLBACK_PARAM;
  }

  static PF_Err DisposeWorld(PF_ProgPtr ref, PF_EffectWorld* world) {
    if (const auto err = Enter(WorldFn("PF_DisposeWorld"))) return *err;
    CheckRef(ref, "PF_DisposeWorld");
    return Active().worlds_.Dispose(world) ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
  }

  static PF_Err AeGetPixelFormat(const PF_EffectWorld* world, PF_PixelFormat* format) {
    if (const auto err = Enter(WorldFn("PF_GetPixelFormat"))) return *err;
    const auto known = Active().worlds_.AeFormat(world);
    if (!known) return PF_Err_BAD_CALLBACK_PARAM;
    *format = *known;
    return PF_Err_NONE;
  }

  static PF_Err UpdateParamUI(PF_ProgPtr ref, PF_ParamIndex index, const PF_ParamDef* def) {
    if (const auto err = Enter(
            SuiteFunction(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, "PF_UpdateParamUI"))) {
      return *err;
    }
    CheckRef(ref, "PF_UpdateParamUI");
    Host& host = Active();
    const std::lock_guard lock(host.mutex_);
    if (index <= 0 || static_cast<size_t>(index) >= host.params_.params.size()) {
      return PF_Err_INVALID_INDEX;
    }
    host.params_.uiUpdates.push_back({index, *def});
    return PF_Err_NONE;
  }

  // --- Tables ------------------------------------------------------------------------

  static constexpr PF_HandleSuite1 kHandleSuite{SuiteHandles::New,    SuiteHandles::Lock,
                                                SuiteHandles::Unlock, SuiteHandles::Dispose,
                                                SuiteHandles::Size,   SuiteHandles::Resize};
  static constexpr PF_WorldSuite2 kWorldSuite{NewWorld, DisposeWorld, AeGetPixelFormat};
  // Only the functions the effect may call; the rest stay null, as a host's unused entries.
  static constexpr PF_PixelFormatSuite1 kPixelFormatSuite = [] {
    PF_PixelFormatSuite1 suite{};
    suite.AddSupportedPixelFormat = AddSupportedPixelFormat;
    suite.ClearSupportedPixelFormats = ClearSupportedPixelFormats;
    suite.GetPixelFormat = PremiereGetPixelFormat;
    return suite;
  }();
  static constexpr PF_UtilitySuite4 kUtilitySuite = [] {
    PF_UtilitySuite4 suite{};
    suite.EffectWantsCheckedOutFramesToMatchRenderPixelFormat =
        EffectWantsCheckedOutFramesToMatchRenderPixelFormat;
    return suite;
  }();
  static constexpr PF_ParamUtilsSuite3 kParamUtilsSuite{
      UpdateParamUI, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

  static void Install(Host& host) {
    host.basic_ = SPBasicSuite{AcquireSuite, ReleaseSuite,    IsEqual,  AllocateBlock,
                               FreeBlock,    ReallocateBlock, Undefined};

    PF_UtilCallbacks& u = host.utils_;
    u.host_new_handle = UtilsHandles::New;
    u.host_lock_handle = UtilsHandles::Lock;
    u.host_unlock_handle = UtilsHandles::Unlock;
    u.host_dispose_handle = UtilsHandles::Dispose;
    u.host_get_handle_size = UtilsHandles::Size;
    u.host_resize_handle = UtilsHandles::Resize;
    u.ansi.sprintf = Sprintf;
    u.ansi.strcpy = Strcpy;
    host.iterateGeneric_ = IterateGeneric;  // served once SetRenderThreads asks for threads

    PF_InteractCallbacks& i = host.inter_;
    i.checkout_param = CheckoutParam;
    i.checkin_param = CheckinParam;
    i.add_param = AddParam;
    i.abort = Abort;
    i.progress = Progress;
    i.register_ui = RegisterUI;

    SuiteRegistry& s = host.suites_;
    s.Register(kPFHandleSuite, kPFHandleSuiteVersion1, &kHandleSuite);
    s.Register(kPFWorldSuite, kPFWorldSuiteVersion2, &kWorldSuite);
    s.Register(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, &kParamUtilsSuite);
    // The pixel-format suite version 1 and the utility suite are Premiere's.
    if (host.profile_.IsPremiere()) {
      s.Register(kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, &kPixelFormatSuite);
      s.Register(kPFUtilitySuite, kPFUtilitySuiteVersion4, &kUtilitySuite);
    }
  }

  static PF_PluginDataCB RegistrationCallback() { return Register; }
};

void InstallHostServices(Host& host) {
  HostServices::Install(host);
}
PF_PluginDataCB HostRegistrationCallback() {
  return HostServices::RegistrationCallback();
}

}  // namespace hostsim
