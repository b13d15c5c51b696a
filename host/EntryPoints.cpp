// The module's two exported entry points.
#include "host/Dispatch.h"
#include "host/EffectIdentity.h"
#include "sdk/HostInterface.h"

namespace {

const A_u_char* HostString(const char* text) {
  return reinterpret_cast<const A_u_char*>(text);
}

}  // namespace

extern "C" DllExport A_Err PluginDataEntryFunction(PF_PluginDataPtr inPtr,
                                                   PF_PluginDataCB inPluginDataCallBackPtr,
                                                   SPBasicSuite* /*inSPBasicSuitePtr*/,
                                                   const char* /*inHostName*/,
                                                   const char* /*inHostVersion*/) {
  using namespace morvane;
  if (inPluginDataCallBackPtr == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  try {
    return inPluginDataCallBackPtr(inPtr, HostString(kEffectName), HostString(kEffectMatchName),
                                   HostString(kEffectCategory), HostString(kEntryPointName),
                                   static_cast<A_long>(kEffectKind), kInterfaceVersion,
                                   kInterfaceSubversion, kReservedInfo);
  } catch (...) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
}

extern "C" DllExport PF_Err EffectMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                       PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
  return morvane::DispatchCommand({cmd, in_data, out_data, params, output, extra});
}
