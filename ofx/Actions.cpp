#include "ofx/Actions.h"

#include <memory>
#include <string>

#include "host/EffectIdentity.h"
#include "ofx/HostSuites.h"
#include "ofx/Instance.h"
#include "ofx/OfxControls.h"

namespace morvane::ofx {
namespace {

PropertySet EffectProperties(OfxImageEffectHandle effect) {
  OfxPropertySetHandle props = nullptr;
  Check(Suites().effects->getPropertySet(effect, &props), "getPropertySet");
  return PropertySet(props);
}

void DefineClip(OfxImageEffectHandle effect, const char* name, bool optional) {
  OfxPropertySetHandle handle = nullptr;
  Check(Suites().effects->clipDefine(effect, name, &handle), name);
  const PropertySet props(handle);
  props.SetString(kOfxImageEffectPropSupportedComponents, kOfxImageComponentRGBA, 0);
  props.SetString(kOfxImageEffectPropSupportedComponents, kOfxImageComponentRGB, 1);
  props.SetInt(kOfxImageEffectPropSupportsTiles, 0);
  if (optional) props.SetInt(kOfxImageClipPropOptional, 1);
}

std::string ClipPreference(const char* prefix, const char* clip) {
  return std::string(prefix) + clip;
}

OfxRectD SourceDefinition(const Instance& instance, OfxTime time) {
  OfxRectD rod{};
  Check(Suites().effects->clipGetRegionOfDefinition(instance.source, time, &rod),
        "the source's region of definition");
  return rod;
}

}  // namespace

OfxStatus Describe(OfxImageEffectHandle effect) {
  const PropertySet props = EffectProperties(effect);
  props.SetString(kOfxPropLabel, kEffectName);
  props.SetString(kOfxImageEffectPluginPropGrouping, kEffectCategory);
  props.SetString(kOfxPropPluginDescription,
                  "Stretches every row or column of the image by its pixels' intensity");
  props.SetString(kOfxPropVersionLabel, MORVANE_VERSION);
  props.SetString(kOfxImageEffectPropSupportedContexts, kOfxImageEffectContextFilter, 0);
  props.SetString(kOfxImageEffectPropSupportedContexts, kOfxImageEffectContextGeneral, 1);
  props.SetString(kOfxImageEffectPropSupportedPixelDepths, kOfxBitDepthByte, 0);
  props.SetString(kOfxImageEffectPropSupportedPixelDepths, kOfxBitDepthShort, 1);
  props.SetString(kOfxImageEffectPropSupportedPixelDepths, kOfxBitDepthFloat, 2);
  props.SetInt(kOfxImageEffectPropSupportsMultipleClipDepths, 0);
  props.SetInt(kOfxImageEffectPropSupportsMultiResolution, 1);
  props.SetInt(kOfxImageEffectPropSupportsTiles, 0);
  props.SetInt(kOfxImageEffectPropTemporalClipAccess, 0);
  props.SetInt(kOfxImageEffectPluginPropHostFrameThreading, 0);
  // Renders keep nothing between calls and the instance is read-only once created.
  props.SetString(kOfxImageEffectPluginRenderThreadSafety, kOfxImageEffectRenderFullySafe);
  return kOfxStatOK;
}

OfxStatus DescribeInContext(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs) {
  // A host that leaves the context out of the arguments describes the filter context.
  const std::string context =
      PropertySet(inArgs).StringOr(kOfxImageEffectPropContext, kOfxImageEffectContextFilter);
  DefineClip(effect, kOfxImageEffectSimpleSourceClipName, false);
  DefineClip(effect, kOfxImageEffectOutputClipName, false);
  if (context == kOfxImageEffectContextGeneral) DefineClip(effect, kIntensityClipName, true);

  OfxParamSetHandle parameters = nullptr;
  Check(Suites().effects->getParamSet(effect, &parameters), "getParamSet");
  DefineParameters(parameters);
  return kOfxStatOK;
}

OfxStatus CreateInstance(OfxImageEffectHandle effect) {
  auto instance = std::make_unique<Instance>(MakeInstance(effect));
  EffectProperties(effect).SetPointer(kOfxPropInstanceData, instance.get());
  instance.release();
  return kOfxStatOK;
}

OfxStatus DestroyInstance(OfxImageEffectHandle effect) {
  delete &InstanceOf(effect);
  EffectProperties(effect).SetPointer(kOfxPropInstanceData, nullptr);
  return kOfxStatOK;
}

OfxStatus GetRegionOfDefinition(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                                OfxPropertySetHandle outArgs) {
  const OfxRectD rod =
      SourceDefinition(InstanceOf(effect), PropertySet(inArgs).Double(kOfxPropTime));
  const double values[4] = {rod.x1, rod.y1, rod.x2, rod.y2};
  PropertySet(outArgs).SetDoubles(kOfxImageEffectPropRegionOfDefinition, values, 4);
  return kOfxStatOK;
}

OfxStatus GetRegionsOfInterest(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                               OfxPropertySetHandle outArgs) {
  const Instance& instance = InstanceOf(effect);
  const PropertySet in(inArgs);
  const OfxTime time = in.Double(kOfxPropTime);
  const auto roi = in.Doubles<4>(kOfxImageEffectPropRegionOfInterest);
  const OfxRectD rod = SourceDefinition(instance, time);
  // Every line the region crosses, whole: a line's pixels depend on all of it. With an
  // intensity clip the whole source, so that the clip spreads over the same lines.
  const int32_t direction = instance.RecordAt(time).direction;
  const bool rows = direction == 0 || direction == 1;
  const bool whole = instance.HasIntensity();
  OfxRectD region{roi[0], roi[1], roi[2], roi[3]};
  if (whole) {
    region = rod;
  } else if (rows) {
    region.x1 = rod.x1;
    region.x2 = rod.x2;
  } else {
    region.y1 = rod.y1;
    region.y2 = rod.y2;
  }
  const double source[4] = {region.x1, region.y1, region.x2, region.y2};
  const PropertySet out(outArgs);
  out.SetDoubles(
      ClipPreference("OfxImageClipPropRoI_", kOfxImageEffectSimpleSourceClipName).c_str(), source,
      4);
  if (whole) {
    OfxRectD all{};
    Check(Suites().effects->clipGetRegionOfDefinition(instance.intensity, time, &all),
          "the intensity clip's region of definition");
    const double intensity[4] = {all.x1, all.y1, all.x2, all.y2};
    out.SetDoubles(ClipPreference("OfxImageClipPropRoI_", kIntensityClipName).c_str(), intensity,
                   4);
  }
  return kOfxStatOK;
}

OfxStatus GetClipPreferences(OfxImageEffectHandle effect, OfxPropertySetHandle outArgs) {
  const Instance& instance = InstanceOf(effect);
  // The output has the source's components, RGB or RGBA (anything else is asked for as RGBA);
  // the intensity clip is read as RGBA.
  OfxPropertySetHandle sourceProps = nullptr;
  Check(Suites().effects->clipGetPropertySet(instance.source, &sourceProps),
        "the source's properties");
  const bool rgb = PropertySet(sourceProps).StringOr(kOfxImageClipPropUnmappedComponents, "") ==
                   kOfxImageComponentRGB;
  const char* components = rgb ? kOfxImageComponentRGB : kOfxImageComponentRGBA;
  const PropertySet out(outArgs);
  for (const char* clip : {kOfxImageEffectSimpleSourceClipName, kOfxImageEffectOutputClipName})
    out.SetString(ClipPreference("OfxImageClipPropComponents_", clip).c_str(), components);
  if (instance.intensity != nullptr)
    out.SetString(ClipPreference("OfxImageClipPropComponents_", kIntensityClipName).c_str(),
                  kOfxImageComponentRGBA);
  return kOfxStatOK;
}

OfxStatus IsIdentity(OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                     OfxPropertySetHandle outArgs) {
  const Instance& instance = InstanceOf(effect);
  if (instance.RecordAt(PropertySet(inArgs).Double(kOfxPropTime)).intensity != 0.0)
    return kOfxStatReplyDefault;
  PropertySet(outArgs).SetString(kOfxPropName, kOfxImageEffectSimpleSourceClipName);
  return kOfxStatOK;
}

}  // namespace morvane::ofx
