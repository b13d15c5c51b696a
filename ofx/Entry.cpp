// The plug-in's two exported functions and its main entry. Every action runs inside one
// catch-all: whatever fails is told to the user through the host's message suite and the host
// gets a status (kOfxStatFailed for a render), never an exception.
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "ofx/Actions.h"
#include "ofx/HostSuites.h"

namespace morvane::ofx {
namespace {

OfxStatus Dispatch(const char* action, OfxImageEffectHandle effect, OfxPropertySetHandle inArgs,
                   OfxPropertySetHandle outArgs) {
  const std::string name = action;
  if (name == kOfxActionLoad) {
    LoadSuites();
    return kOfxStatOK;
  }
  if (name == kOfxActionUnload) return kOfxStatOK;
  if (name == kOfxActionDescribe) return Describe(effect);
  if (name == kOfxImageEffectActionDescribeInContext) return DescribeInContext(effect, inArgs);
  if (name == kOfxActionCreateInstance) return CreateInstance(effect);
  if (name == kOfxActionDestroyInstance) return DestroyInstance(effect);
  if (name == kOfxImageEffectActionGetRegionOfDefinition)
    return GetRegionOfDefinition(effect, inArgs, outArgs);
  if (name == kOfxImageEffectActionGetRegionsOfInterest)
    return GetRegionsOfInterest(effect, inArgs, outArgs);
  if (name == kOfxImageEffectActionGetClipPreferences) return GetClipPreferences(effect, outArgs);
  if (name == kOfxImageEffectActionIsIdentity) return IsIdentity(effect, inArgs, outArgs);
  if (name == kOfxImageEffectActionRender) return Render(effect, inArgs);
  return kOfxStatReplyDefault;
}

OfxStatus MainEntry(const char* action, const void* handle, OfxPropertySetHandle inArgs,
                    OfxPropertySetHandle outArgs) noexcept {
  auto* effect = static_cast<OfxImageEffectHandle>(const_cast<void*>(handle));
  const bool render = action != nullptr && std::strcmp(action, kOfxImageEffectActionRender) == 0;
  try {
    if (action == nullptr) return kOfxStatErrBadHandle;
    return Dispatch(action, effect, inArgs, outArgs);
  } catch (const OfxFailure& failure) {
    ReportError(effect, std::string(action) + ": " + failure.what());
    return render ? kOfxStatFailed : failure.Status();
  } catch (const std::bad_alloc&) {
    ReportError(effect, std::string(action) + ": out of memory");
    return render ? kOfxStatFailed : kOfxStatErrMemory;
  } catch (const std::exception& error) {
    ReportError(effect, std::string(action) + ": " + error.what());
  } catch (...) {
    ReportError(effect, std::string(action) + ": unknown error");
  }
  return kOfxStatFailed;
}

void SetHostEntry(OfxHost* host) noexcept {
  SetHost(host);
}

OfxPlugin gPlugin{kOfxImageEffectPluginApi,
                  1,
                  kPluginIdentifier,
                  MORVANE_VERSION_MAJOR,
                  MORVANE_VERSION_MINOR,
                  SetHostEntry,
                  MainEntry};

}  // namespace
}  // namespace morvane::ofx

extern "C" {

OfxExport int OfxGetNumberOfPlugins(void) {
  return 1;
}

OfxExport OfxPlugin* OfxGetPlugin(int nth) {
  return nth == 0 ? &morvane::ofx::gPlugin : nullptr;
}
}
