#include "ofx/Instance.h"

#include <string>

#include "ofx/Actions.h"
#include "ofx/HostSuites.h"
#include "ofx/OfxControls.h"

namespace morvane::ofx {
namespace {

OfxImageClipHandle Clip(OfxImageEffectHandle effect, const char* name) {
  OfxImageClipHandle clip = nullptr;
  Check(Suites().effects->clipGetHandle(effect, name, &clip, nullptr),
        (std::string("clip \"") + name + "\"").c_str());
  return clip;
}

}  // namespace

StretchRenderRecord Instance::RecordAt(OfxTime time) const {
  return ofx::RecordAt(parameters, time);
}

bool Instance::HasIntensity() const {
  if (intensity == nullptr) return false;
  OfxPropertySetHandle props = nullptr;
  Check(Suites().effects->clipGetPropertySet(intensity, &props), "the intensity clip's properties");
  return PropertySet(props).Int(kOfxImageClipPropConnected) != 0;
}

Instance MakeInstance(OfxImageEffectHandle effect) {
  OfxPropertySetHandle effectProps = nullptr;
  Check(Suites().effects->getPropertySet(effect, &effectProps), "getPropertySet");
  OfxParamSetHandle parameters = nullptr;
  Check(Suites().effects->getParamSet(effect, &parameters), "getParamSet");

  Instance instance;
  instance.source = Clip(effect, kOfxImageEffectSimpleSourceClipName);
  instance.output = Clip(effect, kOfxImageEffectOutputClipName);
  const std::string context =
      PropertySet(effectProps).StringOr(kOfxImageEffectPropContext, kOfxImageEffectContextFilter);
  if (context == kOfxImageEffectContextGeneral)
    instance.intensity = Clip(effect, kIntensityClipName);
  instance.parameters = ParameterHandles(parameters);
  return instance;
}

const Instance& InstanceOf(OfxImageEffectHandle effect) {
  OfxPropertySetHandle props = nullptr;
  void* data = nullptr;
  if (effect == nullptr || Suites().effects->getPropertySet(effect, &props) != kOfxStatOK ||
      Suites().properties->propGetPointer(props, kOfxPropInstanceData, 0, &data) != kOfxStatOK ||
      data == nullptr) {
    throw OfxFailure(kOfxStatErrBadHandle, "the host has not created this instance");
  }
  return *static_cast<const Instance*>(data);
}

}  // namespace morvane::ofx
