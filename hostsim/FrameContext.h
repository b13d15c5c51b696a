// Internal to the simulated host: what one frame has asked for and checked out
// while its render commands run.
#pragma once

#include <map>

#include "hostsim/WorldStore.h"
#include "sdk/HostInterface.h"

namespace hostsim {

class EffectInstance;
class Host;

// Both commands of a frame run on the calling thread, so every render thread
// has its own context.
struct FrameContext {
  EffectInstance* instance = nullptr;
  const PF_EffectWorld* input = nullptr;
  struct LayerCheckout {
    PF_ParamIndex index;
    PF_RenderRequest request;
  };
  std::map<PF_ParamIndex, const PF_EffectWorld*> layerOverrides;  // this frame's layers
  std::map<A_long, LayerCheckout> requests;  // asked for at pre-render, by checkout id
  std::map<A_long, PF_EffectWorld*> pixels;  // checked out at render, by checkout id
  PF_EffectWorld* output = nullptr;
};

// Makes `context` the calling thread's frame for the extent of a scope.
class FrameScope {
 public:
  explicit FrameScope(FrameContext& context);
  ~FrameScope();
  FrameScope(const FrameScope&) = delete;
  FrameScope& operator=(const FrameScope&) = delete;

 private:
  FrameContext* previous_;
};

FrameContext* CurrentFrame();

// The callbacks handed over with the smart-render commands.
PF_PreRenderCallbacks* PreRenderCallbacks();
PF_SmartRenderCallbacks* SmartRenderCallbacks();
// Notes and frees whatever the effect left checked out at the end of a frame.
void CloseFrame(Host& host, FrameContext& frame);

}  // namespace hostsim
