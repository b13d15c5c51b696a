// The plug-in's actions. Each reads its arguments from the host, throws OfxFailure (or any
// exception) when it cannot do its work, and returns the status for the host otherwise.
#pragma once

#include <ofxCore.h>
#include <ofxImageEffect.h>

namespace morvane::ofx {

inline constexpr char kPluginIdentifier[] = "com.orbrenn.morvane";
inline constexpr char kIntensityClipName[] = "Intensity Source";

OfxStatus Describe(OfxImageEffectHandle effect);
OfxStatus DescribeInContext(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs);
OfxStatus CreateInstance(OfxImageEffectHandle effect);
OfxStatus DestroyInstance(OfxImageEffectHandle effect);
OfxStatus GetRegionOfDefinition(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                                OfxPropertySetHandle outArgs);
OfxStatus GetRegionsOfInterest(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                               OfxPropertySetHandle outArgs);
OfxStatus GetClipPreferences(OfxImageEffectHandle effect, OfxPropertySetHandle outArgs);
OfxStatus IsIdentity(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                     OfxPropertySetHandle outArgs);
OfxStatus Render(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs);

}  // namespace morvane::ofx
