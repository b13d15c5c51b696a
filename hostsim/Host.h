// The simulated host: behaves towards an effect module as After Effects or
// Premiere does. It loads the module, registers it, fills the input records as
// the chosen host would, serves the callbacks and suites, and keeps account of
// everything the effect acquires, allocates and declares.
//
// The host's callbacks carry no context pointer, so one Host is active per
// process at a time; its bookkeeping is guarded for calls from several threads.
//
// Rendering a frame:
//
//   hostsim::Host host(hostsim::HostProfile::AfterEffects());  // or Premiere()
//   host.Load(modulePath);            // reads the property list next to it
//   host.Register();
//   host.GlobalSetup();
//   host.ParamsSetup();               // the declared list is validated here
//   hostsim::EffectInstance& fx = host.NewInstance();
//   host.SequenceSetup(fx);
//
//   // Controls by disk ID or name; popups by item text, angles in degrees,
//   // the checkbox as 0/1. Keyframes: {frame, value} pairs, linear for
//   // sliders and angles, held for popups and the checkbox.
//   host.SetPopup(fx, "Channels", "RGBA");
//   host.SetValue(fx, "Curve Phase", 90.0);
//   host.SetKeyframes(fx, "Morvane", {{0, 1.0}, {24, 8.0}});
//   host.SetLayer(fx, "Intensity Source", sourceWorld);  // null: none
//
//   // Images are worlds owned by Worlds() (8-bit, 16-bit or float; rows may
//   // be padded); they are taken to be at the render's resolution already.
//   PF_EffectWorld* in = host.Worlds().Create(w, h, hostsim::PixelDepth::Bits16, 16);
//
//   hostsim::SmartFrame frame;        // After Effects: pre-render, then render
//   frame.frame = 12;                 // controls are read at this frame
//   frame.input = in;
//   frame.request = PF_LRect{...};    // optional sub-rectangle of the layer
//   frame.downsampleX = {1, 2};       // optional; only x scales the render
//   frame.layers = {{"Intensity Source", otherWorld}};  // optional, this frame only
//   hostsim::SmartFrameResult r = host.RenderSmart(fx, frame);
//   // r.renderErr, r.output: width, height, rowbytes (padded), origin, bytes.
//   // Bytes the effect did not write are kUnwrittenByte.
//
//   host.RenderSmartConcurrently(fx, frames, threads);  // several threads at once
//   host.RenderLegacy(fx, legacyFrame);                  // Premiere's single call
//
//   host.SetRenderThreads(4);         // iterate_generic on 4 threads (0: withheld)
//   host.CancelRenders(2);            // abort answers PF_Interrupt_CANCEL after 2 calls
//
//   host.SequenceSetdown(fx);
//   host.GlobalSetdown();
//   host.Report();                    // Clean() when everything was given back
//
// RenderSmart, RenderSmartConcurrently and RenderLegacy may run on several
// threads at once for one instance; set controls and layers only between them.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "hostsim/CallLog.h"
#include "hostsim/FaultPlan.h"
#include "hostsim/Frames.h"
#include "hostsim/HandleTable.h"
#include "hostsim/HostProfile.h"
#include "hostsim/Module.h"
#include "hostsim/ParamStore.h"
#include "hostsim/SessionReport.h"
#include "hostsim/SuiteRegistry.h"
#include "hostsim/WorldStore.h"
#include "sdk/HostInterface.h"

namespace hostsim {

struct FrameContext;
struct HostServices;
struct RenderServices;

// What PluginDataEntryFunction handed to the registration callback.
struct Registration {
  int calls = 0;
  bool matchedHostPointer = false;  // the host's own registration pointer came back
  std::string name;
  std::string matchName;
  std::string category;
  std::string entryPoint;
  int32_t kind = 0;
  int32_t apiVersionMajor = 0;
  int32_t apiVersionMinor = 0;
  int32_t reservedInfo = 0;
};

// One command's answer.
struct CommandResult {
  PF_Err err = PF_Err_NONE;
  PF_OutData out{};

  std::string Message() const { return out.return_msg; }
  bool ShowsMessage() const { return (out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE) != 0; }
};

// The answer to PF_Cmd_GET_FLATTENED_SEQUENCE_DATA. The host keeps the bytes
// and disposes of the handle, as it does after storing them in a project.
struct FlatCopy {
  CommandResult result;
  PF_Handle handle = nullptr;  // no longer valid; for identity comparisons only
  std::vector<uint8_t> bytes;
};

// What global set-up told the host.
struct GlobalSetupRecord {
  bool done = false;
  A_u_long version = 0;
  PF_OutFlags outFlags = 0;
  PF_OutFlags2 outFlags2 = 0;
};

// What the effect declared through the Premiere pixel-format suite.
struct PixelFormatLog {
  int clears = 0;
  std::vector<PrPixelFormat> supported;  // since the last clear, in order
  bool checkedOutFramesMatchRenderFormat = false;
};

// Controls declared at parameter set-up. Position 0 is the input layer.
struct ParamList {
  std::vector<PF_ParamDef> params;
  struct CustomUI {
    PF_ParamIndex index;  // the control declared last before registration
    PF_CustomUIInfo info;
  };
  std::vector<CustomUI> customUIs;
  struct UiUpdate {
    PF_ParamIndex index;
    PF_ParamDef def;
  };
  std::vector<UiUpdate> uiUpdates;  // PF_UpdateParamUI calls
};

// One effect instance as the host keeps it.
class EffectInstance {
 public:
  int Id() const { return id_; }
  PF_Handle SequenceData() const { return sequenceData_; }

 private:
  friend class Host;
  friend struct RenderServices;
  explicit EffectInstance(int id) : id_(id) {}
  int id_;
  PF_Handle sequenceData_ = nullptr;
  InstanceParams params_;  // guarded by the host's mutex
};

class Host {
 public:
  explicit Host(HostProfile profile);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // The host whose callbacks are live, or null.
  static Host* Active();

  const HostProfile& Profile() const { return profile_; }
  FaultPlan& Faults() { return faults_; }
  SuiteRegistry& Suites() { return suites_; }
  HandleTable& Handles() { return handles_; }
  WorldStore& Worlds() { return worlds_; }
  CallLog& Calls() { return calls_; }
  const SPBasicSuite* BasicSuite() const { return &basic_; }

  // --- The module --------------------------------------------------------------
  // Reads the property list next to the module (PiplError when malformed),
  // loads the module and resolves its entry points (ModuleError).
  void Load(const std::filesystem::path& modulePath);
  void Load(const std::filesystem::path& modulePath, const std::filesystem::path& piplPath);
  const Module& LoadedModule() const;
  // Calls PluginDataEntryFunction and returns its result. The registration is
  // checked against the property list; differences go into the report.
  A_Err Register();
  const Registration& Registered() const { return registration_; }

  // --- Commands ------------------------------------------------------------------
  // The input record this host hands over with every command (for `instance`,
  // its sequence data).
  PF_InData MakeInData(const EffectInstance* instance = nullptr) const;
  // The output record before a command: cleared, with the instance's sequence data.
  PF_OutData MakeOutData(const PF_InData& in) const;
  // Calls the entry point as is; nothing is recorded.
  PF_Err Send(PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef** params = nullptr,
              PF_LayerDef* output = nullptr, void* extra = nullptr);
  // A command with fresh records; the instance's sequence data is not updated.
  CommandResult Command(PF_Cmd cmd, const EffectInstance* instance = nullptr,
                        PF_ParamDef** params = nullptr, PF_LayerDef* output = nullptr,
                        void* extra = nullptr);

  // --- Lifecycle -------------------------------------------------------------------
  CommandResult About();
  // Records the version and flag words and compares them with the property list.
  CommandResult GlobalSetup();
  // Collects the declared controls and checks the reported count.
  CommandResult ParamsSetup();
  EffectInstance& NewInstance();
  // An instance opened from a saved project: its sequence data holds `flat`.
  EffectInstance& OpenInstance(const std::vector<uint8_t>& flat);
  // An instance whose sequence data is `handle` (made through Handles()).
  EffectInstance& OpenInstance(PF_Handle handle);
  CommandResult SequenceSetup(EffectInstance& instance);
  CommandResult SequenceResetup(EffectInstance& instance);
  CommandResult SequenceFlatten(EffectInstance& instance);
  FlatCopy GetFlattenedSequenceData(EffectInstance& instance);
  CommandResult SequenceSetdown(EffectInstance& instance);
  CommandResult GlobalSetdown();

  // --- What the effect declared ------------------------------------------------------
  const GlobalSetupRecord& Global() const { return global_; }
  PixelFormatLog PixelFormats() const;
  ParamList Params() const;

  // --- Controls of an instance (after ParamsSetup) -------------------------------------
  // Values in the units a user sees: popups as 1-based item numbers, angles in
  // degrees, the checkbox as 0 or 1. A value the host would refuse (outside a
  // slider's valid range, no such item) throws std::invalid_argument; an
  // unknown control std::out_of_range.
  void SetValue(EffectInstance& instance, const ControlRef& control, double value);
  // Sliders and angles are interpolated linearly between keys, popups and the
  // checkbox hold the last key's value; before the first key its value holds.
  void SetKeyframes(EffectInstance& instance, const ControlRef& control,
                    std::vector<Keyframe> keys);
  void SetPopup(EffectInstance& instance, const ControlRef& control, const std::string& item);
  // The image a layer control refers to (null: none); owned by the caller.
  void SetLayer(EffectInstance& instance, const ControlRef& control, const PF_EffectWorld* world);
  // The definition checkout_param hands out at `frame` (value, UI flags).
  PF_ParamDef ParamAt(EffectInstance& instance, const ControlRef& control, double frame);
  PF_ParamIndex PositionOf(EffectInstance& instance, const ControlRef& control);

  // --- UI commands ------------------------------------------------------------------------
  // Send the command with the parameter array at `frame`; PF_UpdateParamUI
  // calls change the instance's UI flags (see ParamAt) and are recorded in
  // Params().uiUpdates.
  CommandResult UpdateParamsUI(EffectInstance& instance, int32_t frame = 0);
  CommandResult UserChangedParam(EffectInstance& instance, const ControlRef& control,
                                 int32_t frame = 0);

  // --- Rendering --------------------------------------------------------------------------
  // Pre-render, then render, as After Effects does; the pre-render data is
  // deleted through the effect's function afterwards.
  SmartFrameResult RenderSmart(EffectInstance& instance, const SmartFrame& frame);
  // The frames on `threads` threads at once; results in the order of `frames`.
  std::vector<SmartFrameResult> RenderSmartConcurrently(EffectInstance& instance,
                                                        const std::vector<SmartFrame>& frames,
                                                        int threads);
  // The single-call render, as Premiere does it (any profile sends it).
  LegacyFrameResult RenderLegacy(EffectInstance& instance, const LegacyFrame& frame);

  // --- Render threads and cancelling ------------------------------------------------------
  // Serves the utility callback iterate_generic with `threads` threads per call (the calling
  // thread is thread 0, the others are started for the call and joined before it returns);
  // 0 withholds it (the callback is null), as a host without it does. Default: withheld. Set
  // between renders.
  void SetRenderThreads(int threads);
  int RenderThreads() const { return renderThreads_.load(); }
  // The abort callback answers PF_Err_NONE to its next `abortsFirst` calls and
  // PF_Interrupt_CANCEL to every call after them, as when the user cancels a render; a
  // negative count never cancels (the default).
  void CancelRenders(int abortsFirst) { abortsBeforeCancel_.store(abortsFirst); }

  // Unbalanced suites, live handles, layers and parameters not checked in, and
  // recorded misuse.
  SessionReport Report() const;

 private:
  friend struct HostServices;
  friend struct RenderServices;
  friend struct CustomUIServices;  // hostsim/CustomUIServices.cpp

  InstanceParams& ParamsOf(EffectInstance& instance);
  PF_ParamIndex Find(EffectInstance& instance, const ControlRef& control);
  std::vector<PF_ParamDef> ParamArrayAt(EffectInstance& instance, double frame);
  CommandResult UiCommand(PF_Cmd cmd, EffectInstance& instance, void* extra, int32_t frame);
  FrameContext NewFrame(EffectInstance& instance, const PF_EffectWorld* input,
                        const std::vector<FrameLayer>& layers);
  void DeletePreRenderData(const PF_PreRenderOutput& preOutput);

  PF_ProgPtr EffectRef(const EffectInstance* instance) const;
  void NoteProblem(const std::string& problem);
  CommandResult SequenceCommand(PF_Cmd cmd, EffectInstance& instance);

  HostProfile profile_;
  FaultPlan faults_;
  SuiteRegistry suites_;
  HandleTable handles_;
  WorldStore worlds_;
  CallLog calls_;

  SPBasicSuite basic_{};
  PF_UtilCallbacks utils_{};
  decltype(PF_UtilCallbacks::iterate_generic) iterateGeneric_ = nullptr;  // served when threads > 0
  std::atomic<int> renderThreads_{0};
  std::atomic<int> abortsBeforeCancel_{-1};
  PF_InteractCallbacks inter_{};
  char globalRef_ = 0;  // effect_ref outside any instance

  std::unique_ptr<Module> module_;
  Registration registration_;
  GlobalSetupRecord global_;

  mutable std::mutex mutex_;              // guards everything below
  std::deque<EffectInstance> instances_;  // stable addresses: each is an effect_ref
  PixelFormatLog pixelFormats_;
  ParamList params_;
  std::vector<std::string> problems_;
  int paramCheckouts_ = 0;
  int pixelCheckouts_ = 0;  // smart-render layer checkouts not yet checked in
};

}  // namespace hostsim
