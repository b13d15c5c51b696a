#include "hostsim/Host.h"

#include <atomic>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace hostsim {

void InstallHostServices(Host& host);
void InstallRenderServices(Host& host);
void InstallCustomUIServices(Host& host);
PF_PluginDataCB HostRegistrationCallback();

namespace {

std::atomic<Host*> activeHost{nullptr};

std::string Hex(uint32_t v) {
  std::ostringstream out;
  out << "0x" << std::hex << std::uppercase << v;
  return out.str();
}

}  // namespace

std::string SessionReport::Describe() const {
  std::ostringstream out;
  for (const SuiteBalance& b : unbalancedSuites) {
    out << "suite \"" << b.key.name << "\" version " << b.key.version << ": acquired " << b.acquired
        << ", released " << b.released << "\n";
  }
  for (const HandleInfo& h : leakedHandles) {
    out << "handle #" << h.serial << " of " << h.size << " bytes never disposed of";
    if (h.lockCount != 0) out << " (locked " << h.lockCount << " times)";
    out << "\n";
  }
  for (const std::string& p : problems)
    out << p << "\n";
  return out.str();
}

Host::Host(HostProfile profile) : profile_(std::move(profile)) {
  Host* expected = nullptr;
  if (!activeHost.compare_exchange_strong(expected, this)) {
    throw std::logic_error("hostsim: only one Host can be active at a time");
  }
  InstallHostServices(*this);
  InstallRenderServices(*this);
  InstallCustomUIServices(*this);  // the drawing suites and events
}

Host::~Host() {
  module_.reset();
  activeHost.store(nullptr);
}

Host* Host::Active() {
  return activeHost.load();
}

void Host::SetRenderThreads(int threads) {
  renderThreads_.store(threads > 0 ? threads : 0);
  utils_.iterate_generic = threads > 0 ? iterateGeneric_ : nullptr;
}

void Host::NoteProblem(const std::string& problem) {
  const std::lock_guard lock(mutex_);
  problems_.push_back(problem);
}

// --- The module ------------------------------------------------------------------

void Host::Load(const std::filesystem::path& modulePath) {
  Load(modulePath, PiplPathFor(modulePath));
}

void Host::Load(const std::filesystem::path& modulePath, const std::filesystem::path& piplPath) {
  module_.reset();
  module_ = std::make_unique<Module>(modulePath, piplPath);
}

const Module& Host::LoadedModule() const {
  if (!module_) throw std::logic_error("hostsim: no module loaded");
  return *module_;
}

A_Err Host::Register() {
  const Module& module = LoadedModule();
  registration_ = Registration{};
  const A_Err err = module.RegistrationEntry()(
      reinterpret_cast<PF_PluginDataPtr>(&registration_), HostRegistrationCallback(), &basic_,
      profile_.hostName.c_str(), profile_.hostVersion.c_str());
  if (err != A_Err_NONE) return err;

  const PiplInfo& pipl = module.Pipl();
  const Registration& r = registration_;
  if (r.calls != 1)
    NoteProblem("registration callback called " + std::to_string(r.calls) + " times");
  if (!r.matchedHostPointer) NoteProblem("registration did not pass the host's pointer back");
  auto compare = [&](const char* what, const std::string& registered, const std::string& listed) {
    if (registered != listed) {
      NoteProblem(std::string("registered ") + what + " \"" + registered +
                  "\" differs from the property list's \"" + listed + "\"");
    }
  };
  compare("name", r.name, pipl.name);
  compare("match name", r.matchName, pipl.matchName);
  compare("category", r.category, pipl.category);
  compare("entry point", r.entryPoint, pipl.entryPoint);
  if (static_cast<uint32_t>(r.kind) != pipl.kind)
    NoteProblem("registered kind differs from the property list");
  if (r.apiVersionMajor != pipl.specVersionMajor || r.apiVersionMinor != pipl.specVersionMinor) {
    NoteProblem("registered interface version differs from the property list");
  }
  return err;
}

// --- Records -----------------------------------------------------------------------

PF_ProgPtr Host::EffectRef(const EffectInstance* instance) const {
  const void* ref = instance != nullptr ? static_cast<const void*>(instance)
                                        : static_cast<const void*>(&globalRef_);
  return reinterpret_cast<PF_ProgPtr>(const_cast<void*>(ref));
}

PF_InData Host::MakeInData(const EffectInstance* instance) const {
  PF_InData in{};
  in.inter = inter_;
  in.utils = const_cast<PF_UtilCallbacks*>(&utils_);
  in.effect_ref = EffectRef(instance);
  in.quality = 1;  // high quality
  in.version.major = profile_.specMajor;
  in.version.minor = profile_.specMinor;
  in.appl_id = profile_.applId;
  {
    const std::lock_guard lock(mutex_);
    in.num_params = static_cast<A_long>(params_.params.size());
  }
  in.current_time = 0;
  in.time_step = profile_.timeStep;
  in.local_time_step = profile_.timeStep;
  in.total_time = profile_.timeStep * 10;
  in.time_scale = profile_.timeScale;
  in.field = PF_Field_FRAME;
  in.width = profile_.width;
  in.height = profile_.height;
  in.extent_hint = {0, 0, profile_.width, profile_.height};
  in.downsample_x = {1, 1};
  in.downsample_y = {1, 1};
  in.pixel_aspect_ratio = {1, 1};
  in.sequence_data = instance != nullptr ? instance->sequenceData_ : nullptr;
  in.pica_basicP = const_cast<SPBasicSuite*>(&basic_);
  return in;
}

PF_OutData Host::MakeOutData(const PF_InData& in) const {
  PF_OutData out{};
  out.sequence_data = in.sequence_data;
  out.width = in.width;
  out.height = in.height;
  return out;
}

PF_Err Host::Send(PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef** params,
                  PF_LayerDef* output, void* extra) {
  return LoadedModule().Entry()(cmd, &in, &out, params, output, extra);
}

CommandResult Host::Command(PF_Cmd cmd, const EffectInstance* instance, PF_ParamDef** params,
                            PF_LayerDef* output, void* extra) {
  PF_InData in = MakeInData(instance);
  CommandResult result;
  result.out = MakeOutData(in);
  result.err = Send(cmd, in, result.out, params, output, extra);
  return result;
}

// --- Lifecycle -----------------------------------------------------------------------

CommandResult Host::About() {
  return Command(PF_Cmd_ABOUT);
}

CommandResult Host::GlobalSetup() {
  CommandResult result = Command(PF_Cmd_GLOBAL_SETUP);
  if (result.err != PF_Err_NONE) return result;
  global_ = {true, result.out.my_version, result.out.out_flags, result.out.out_flags2};
  if (module_) {
    const PiplInfo& pipl = module_->Pipl();
    if (global_.version != pipl.effectVersion) {
      NoteProblem("global set-up version " + Hex(global_.version) +
                  " differs from the property list's " + Hex(pipl.effectVersion));
    }
    if (static_cast<uint32_t>(global_.outFlags) != pipl.outFlags) {
      NoteProblem("global set-up out_flags " + Hex(static_cast<uint32_t>(global_.outFlags)) +
                  " differ from the property list's " + Hex(pipl.outFlags));
    }
    if (static_cast<uint32_t>(global_.outFlags2) != pipl.outFlags2) {
      NoteProblem("global set-up out_flags2 " + Hex(static_cast<uint32_t>(global_.outFlags2)) +
                  " differ from the property list's " + Hex(pipl.outFlags2));
    }
  }
  return result;
}

CommandResult Host::ParamsSetup() {
  {
    const std::lock_guard lock(mutex_);
    params_ = ParamList{};
    // Position 0: the layer the effect is applied to, supplied by the host.
    PF_ParamDef input{};
    input.param_type = PF_Param_LAYER;
    params_.params.push_back(input);
  }
  PF_InData in = MakeInData();
  CommandResult result;
  result.out = MakeOutData(in);
  // The host counts its own input layer until the effect says otherwise.
  result.out.num_params = 1;
  result.err = Send(PF_Cmd_PARAMS_SETUP, in, result.out);
  if (result.err == PF_Err_NONE) {
    const std::lock_guard lock(mutex_);
    const auto declared = static_cast<A_long>(params_.params.size());
    if (result.out.num_params != declared) {
      problems_.push_back("parameter set-up reports " + std::to_string(result.out.num_params) +
                          " parameters but declared " + std::to_string(declared));
    }
    // Checked as a host does when it builds the controls.
    for (std::string& problem : ValidateParamList(params_.params)) {
      problems_.push_back(std::move(problem));
    }
  }
  return result;
}

EffectInstance& Host::NewInstance() {
  const std::lock_guard lock(mutex_);
  instances_.push_back(EffectInstance(static_cast<int>(instances_.size()) + 1));
  return instances_.back();
}

EffectInstance& Host::OpenInstance(const std::vector<uint8_t>& flat) {
  return OpenInstance(handles_.NewWithBytes(flat));
}

EffectInstance& Host::OpenInstance(PF_Handle handle) {
  EffectInstance& instance = NewInstance();
  instance.sequenceData_ = handle;
  return instance;
}

// The host takes the output record's sequence data as the instance's own after
// set-up, re-set-up and flattening; it starts as the current data.
CommandResult Host::SequenceCommand(PF_Cmd cmd, EffectInstance& instance) {
  CommandResult result = Command(cmd, &instance);
  instance.sequenceData_ = result.out.sequence_data;
  return result;
}

CommandResult Host::SequenceSetup(EffectInstance& instance) {
  return SequenceCommand(PF_Cmd_SEQUENCE_SETUP, instance);
}

CommandResult Host::SequenceResetup(EffectInstance& instance) {
  return SequenceCommand(PF_Cmd_SEQUENCE_RESETUP, instance);
}

CommandResult Host::SequenceFlatten(EffectInstance& instance) {
  return SequenceCommand(PF_Cmd_SEQUENCE_FLATTEN, instance);
}

FlatCopy Host::GetFlattenedSequenceData(EffectInstance& instance) {
  PF_InData in = MakeInData(&instance);
  FlatCopy copy;
  copy.result.out = MakeOutData(in);
  // Cleared, so that an effect that hands back nothing is seen to do so.
  copy.result.out.sequence_data = nullptr;
  copy.result.err = Send(PF_Cmd_GET_FLATTENED_SEQUENCE_DATA, in, copy.result.out);
  copy.handle = copy.result.out.sequence_data;
  if (copy.handle != nullptr && copy.handle != instance.sequenceData_) {
    copy.bytes = handles_.Bytes(copy.handle);
    handles_.Dispose(copy.handle);
  } else if (copy.handle != nullptr) {
    NoteProblem("flat copy handed back the instance's own sequence data");
  }
  return copy;
}

CommandResult Host::SequenceSetdown(EffectInstance& instance) {
  CommandResult result = Command(PF_Cmd_SEQUENCE_SETDOWN, &instance);
  instance.sequenceData_ = nullptr;
  return result;
}

CommandResult Host::GlobalSetdown() {
  return Command(PF_Cmd_GLOBAL_SETDOWN);
}

// --- What the effect declared ------------------------------------------------------------

PixelFormatLog Host::PixelFormats() const {
  const std::lock_guard lock(mutex_);
  return pixelFormats_;
}

ParamList Host::Params() const {
  const std::lock_guard lock(mutex_);
  return params_;
}

SessionReport Host::Report() const {
  SessionReport report;
  report.unbalancedSuites = suites_.Unbalanced();
  report.leakedHandles = handles_.Live();
  report.problems = handles_.Misuse();
  const std::lock_guard lock(mutex_);
  report.problems.insert(report.problems.end(), problems_.begin(), problems_.end());
  if (pixelCheckouts_ != 0) {
    report.problems.push_back(std::to_string(pixelCheckouts_) + " layer checkouts not checked in");
  }
  if (paramCheckouts_ != 0) {
    report.problems.push_back(std::to_string(paramCheckouts_) +
                              " parameter checkouts not checked in");
  }
  return report;
}

}  // namespace hostsim
