// What an instance of the effect keeps between actions: the handles of its clips and
// parameters, looked up once when the host creates it. Nothing in it changes afterwards, so any
// number of renders may read it at once.
#pragma once

#include <vector>

#include <ofxImageEffect.h>
#include <ofxParam.h>

#include "render/StretchRenderRecord.h"

namespace morvane::ofx {

struct Instance {
  OfxImageClipHandle source = nullptr;
  OfxImageClipHandle output = nullptr;
  OfxImageClipHandle intensity = nullptr;  // general context only
  std::vector<OfxParamHandle> parameters;  // in OfxControls() order

  StretchRenderRecord RecordAt(OfxTime time) const;
  // Whether the intensity clip is there and connected to something.
  bool HasIntensity() const;
};

// Looks up the clips and parameters of a new instance.
Instance MakeInstance(OfxImageEffectHandle effect);

// The instance the host created for `effect`; throws OfxFailure(kOfxStatErrBadHandle) for an
// effect the host has not created an instance of.
const Instance& InstanceOf(OfxImageEffectHandle effect);

}  // namespace morvane::ofx
