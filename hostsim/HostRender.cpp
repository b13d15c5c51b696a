// The simulated host's rendering, control values and UI commands.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

#include "hostsim/FrameContext.h"
#include "hostsim/Host.h"

namespace hostsim {
namespace {

short BitDepth(PixelDepth depth) {
  return depth == PixelDepth::Bits8 ? 8 : depth == PixelDepth::Bits16 ? 16 : 32;
}

PF_EffectWorld* NewOutput(WorldStore& worlds, int32_t width, int32_t height, PixelDepth depth,
                          int32_t rowPadding) {
  PF_EffectWorld* world = worlds.Create(width, height, depth, rowPadding);
  std::memset(world->data, kUnwrittenByte,
              static_cast<size_t>(world->rowbytes) * static_cast<size_t>(world->height));
  return world;
}

Image Snapshot(const PF_EffectWorld& world, PixelDepth depth) {
  Image image;
  image.width = world.width;
  image.height = world.height;
  image.rowbytes = world.rowbytes;
  image.originX = world.origin_x;
  image.originY = world.origin_y;
  image.depth = depth;
  const auto* bytes = reinterpret_cast<const uint8_t*>(world.data);
  image.bytes.assign(
      bytes, bytes + static_cast<size_t>(world.rowbytes) * static_cast<size_t>(world.height));
  return image;
}

}  // namespace

// --- Controls of an instance -------------------------------------------------------

InstanceParams& Host::ParamsOf(EffectInstance& instance) {
  const std::lock_guard lock(mutex_);
  if (!instance.params_.Ready() || instance.params_.Count() != params_.params.size()) {
    instance.params_.Reset(params_.params);
  }
  return instance.params_;
}

PF_ParamIndex Host::Find(EffectInstance& instance, const ControlRef& control) {
  const InstanceParams& params = ParamsOf(instance);
  return control.id ? params.FindById(*control.id) : params.FindByName(control.name);
}

void Host::SetValue(EffectInstance& instance, const ControlRef& control, double value) {
  SetKeyframes(instance, control, {{0.0, value}});
}

void Host::SetKeyframes(EffectInstance& instance, const ControlRef& control,
                        std::vector<Keyframe> keys) {
  const PF_ParamIndex index = Find(instance, control);
  const std::lock_guard lock(mutex_);
  instance.params_.Set(index, ParamTrack(std::move(keys)));
}

void Host::SetPopup(EffectInstance& instance, const ControlRef& control, const std::string& item) {
  const PF_ParamIndex index = Find(instance, control);
  const std::lock_guard lock(mutex_);
  instance.params_.Set(index, ParamTrack(instance.params_.PopupItem(index, item)));
}

void Host::SetLayer(EffectInstance& instance, const ControlRef& control,
                    const PF_EffectWorld* world) {
  const PF_ParamIndex index = Find(instance, control);
  const std::lock_guard lock(mutex_);
  instance.params_.SetLayer(index, world);
}

PF_ParamDef Host::ParamAt(EffectInstance& instance, const ControlRef& control, double frame) {
  const PF_ParamIndex index = Find(instance, control);
  const std::lock_guard lock(mutex_);
  return instance.params_.DefinitionAt(index, frame);
}

PF_ParamIndex Host::PositionOf(EffectInstance& instance, const ControlRef& control) {
  return Find(instance, control);
}

// --- UI commands -----------------------------------------------------------------------

std::vector<PF_ParamDef> Host::ParamArrayAt(EffectInstance& instance, double frame) {
  ParamsOf(instance);
  const std::lock_guard lock(mutex_);
  std::vector<PF_ParamDef> defs;
  for (size_t i = 0; i < instance.params_.Count(); ++i) {
    defs.push_back(instance.params_.DefinitionAt(static_cast<PF_ParamIndex>(i), frame));
  }
  // A host's array always starts with the input layer, also when the effect's parameter set-up
  // never ran or declared nothing.
  if (defs.empty()) {
    PF_ParamDef input{};
    input.param_type = PF_Param_LAYER;
    defs.push_back(input);
  }
  return defs;
}

CommandResult Host::UiCommand(PF_Cmd cmd, EffectInstance& instance, void* extra, int32_t frame) {
  std::vector<PF_ParamDef> defs = ParamArrayAt(instance, frame);
  std::vector<PF_ParamDef*> params;
  for (PF_ParamDef& def : defs)
    params.push_back(&def);
  PF_InData in = MakeInData(&instance);
  in.current_time = frame * profile_.timeStep;
  CommandResult result;
  result.out = MakeOutData(in);
  result.err = Send(cmd, in, result.out, params.data(), nullptr, extra);
  return result;
}

CommandResult Host::UpdateParamsUI(EffectInstance& instance, int32_t frame) {
  return UiCommand(PF_Cmd_UPDATE_PARAMS_UI, instance, nullptr, frame);
}

CommandResult Host::UserChangedParam(EffectInstance& instance, const ControlRef& control,
                                     int32_t frame) {
  // The record the host passes with the command: the changed control's position.
  struct {
    PF_ParamIndex param_index;
  } changed{Find(instance, control)};
  return UiCommand(PF_Cmd_USER_CHANGED_PARAM, instance, &changed, frame);
}

// --- Rendering ---------------------------------------------------------------------------

FrameContext Host::NewFrame(EffectInstance& instance, const PF_EffectWorld* input,
                            const std::vector<FrameLayer>& layers) {
  FrameContext context;
  context.instance = &instance;
  context.input = input;
  for (const FrameLayer& layer : layers) {
    const PF_ParamIndex index = Find(instance, layer.control);
    const std::lock_guard lock(mutex_);
    if (instance.params_.Declared(index).param_type != PF_Param_LAYER) {
      throw std::invalid_argument("hostsim: a frame layer for a control that is not a layer");
    }
    context.layerOverrides[index] = layer.world;
  }
  return context;
}

SmartFrameResult Host::RenderSmart(EffectInstance& instance, const SmartFrame& frame) {
  if (frame.input == nullptr) throw std::invalid_argument("hostsim: a frame needs an input");
  const std::optional<PixelDepth> depth = worlds_.Depth(frame.input);
  if (!depth) throw std::invalid_argument("hostsim: the input is not a world of this host");
  ParamsOf(instance);

  FrameContext context = NewFrame(instance, frame.input, frame.layers);
  const FrameScope scope(context);

  PF_InData in = MakeInData(&instance);
  in.current_time = frame.frame * profile_.timeStep;
  in.width = frame.input->width;
  in.height = frame.input->height;
  in.extent_hint = {0, 0, in.width, in.height};
  in.downsample_x = frame.downsampleX;
  in.downsample_y = frame.downsampleY;

  PF_PreRenderInput preInput{};
  preInput.output_request.rect = frame.request.value_or(PF_LRect{0, 0, in.width, in.height});
  preInput.output_request.field = PF_Field_FRAME;
  preInput.output_request.channel_mask = PF_ChannelMask_ARGB;
  preInput.bitdepth = BitDepth(*depth);
  PF_PreRenderOutput preOutput{};
  PF_PreRenderExtra preExtra{&preInput, &preOutput, PreRenderCallbacks()};

  SmartFrameResult result;
  PF_InData preIn = in;
  PF_OutData preOut = MakeOutData(preIn);
  result.preRenderErr = Send(PF_Cmd_SMART_PRE_RENDER, preIn, preOut, nullptr, nullptr, &preExtra);
  result.resultRect = preOutput.result_rect;
  result.maxResultRect = preOutput.max_result_rect;
  if (result.preRenderErr != PF_Err_NONE) {
    result.message = preOut.return_msg;
    if (preOutput.pre_render_data != nullptr) {
      NoteProblem("a failed pre-render handed over pre-render data");
      DeletePreRenderData(preOutput);
    }
    return result;
  }

  const PF_LRect& rect = preInput.output_request.rect;
  PF_EffectWorld* output = NewOutput(worlds_, rect.right - rect.left, rect.bottom - rect.top,
                                     *depth, frame.outputRowPadding);
  output->origin_x = rect.left;
  output->origin_y = rect.top;
  context.output = output;

  PF_SmartRenderInput renderInput{};
  renderInput.output_request = preInput.output_request;
  renderInput.bitdepth = preInput.bitdepth;
  renderInput.pre_render_data = preOutput.pre_render_data;
  PF_SmartRenderExtra renderExtra{&renderInput, SmartRenderCallbacks()};
  PF_InData renderIn = in;
  PF_OutData renderOut = MakeOutData(renderIn);
  result.renderErr = Send(PF_Cmd_SMART_RENDER, renderIn, renderOut, nullptr, nullptr, &renderExtra);
  result.rendered = true;
  if (result.renderErr != PF_Err_NONE) result.message = renderOut.return_msg;

  CloseFrame(*this, context);
  result.output = Snapshot(*output, *depth);
  worlds_.Dispose(output);
  DeletePreRenderData(preOutput);
  return result;
}

void Host::DeletePreRenderData(const PF_PreRenderOutput& preOutput) {
  if (preOutput.pre_render_data == nullptr) return;
  if (preOutput.delete_pre_render_data_func == nullptr) {
    NoteProblem("pre-render data handed over without a delete function");
    return;
  }
  preOutput.delete_pre_render_data_func(preOutput.pre_render_data);
}

std::vector<SmartFrameResult> Host::RenderSmartConcurrently(EffectInstance& instance,
                                                            const std::vector<SmartFrame>& frames,
                                                            int threads) {
  ParamsOf(instance);
  std::vector<SmartFrameResult> results(frames.size());
  std::atomic<size_t> next{0};
  std::vector<std::thread> workers;
  for (int t = 0; t < std::max(threads, 1); ++t) {
    workers.emplace_back([&] {
      for (size_t i = next++; i < frames.size(); i = next++) {
        results[i] = RenderSmart(instance, frames[i]);
      }
    });
  }
  for (std::thread& worker : workers)
    worker.join();
  return results;
}

LegacyFrameResult Host::RenderLegacy(EffectInstance& instance, const LegacyFrame& frame) {
  if (frame.input == nullptr) throw std::invalid_argument("hostsim: a frame needs an input");
  FrameContext context = NewFrame(instance, frame.input, frame.layers);
  const FrameScope scope(context);

  // The array carries the values at the frame; layers are checked out.
  std::vector<PF_ParamDef> defs = ParamArrayAt(instance, frame.frame);
  defs[0].u.ld = *frame.input;
  std::vector<PF_ParamDef*> params;
  for (PF_ParamDef& def : defs)
    params.push_back(&def);

  PF_InData in = MakeInData(&instance);
  in.current_time = frame.frame * profile_.timeStep;
  in.width = frame.layerWidth > 0 ? frame.layerWidth : frame.input->width;
  in.height = frame.input->height;
  in.extent_hint = {0, 0, in.width, in.height};

  const int32_t width = frame.outputWidth > 0 ? frame.outputWidth : frame.input->width;
  const int32_t height = frame.outputHeight > 0 ? frame.outputHeight : frame.input->height;
  PF_EffectWorld* output = NewOutput(worlds_, width, height, frame.depth, frame.outputRowPadding);
  if (frame.reportedFormat) {
    worlds_.OverrideFormats(output, AeFormatOf(frame.depth), *frame.reportedFormat);
  }

  LegacyFrameResult result;
  PF_OutData out = MakeOutData(in);
  result.err = Send(PF_Cmd_RENDER, in, out, params.data(), output, nullptr);
  if (result.err != PF_Err_NONE) result.message = out.return_msg;
  result.output = Snapshot(*output, frame.depth);
  worlds_.Dispose(output);
  return result;
}

}  // namespace hostsim
