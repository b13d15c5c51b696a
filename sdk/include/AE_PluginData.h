// Registration interface: the host calls PluginDataEntryFunction, which
// registers each effect of the module through PF_PluginDataCB.
#ifndef AE_PLUGINDATA_H
#define AE_PLUGINDATA_H

#include <A.h>
#include <SPBasic.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

typedef struct PF_PluginData* PF_PluginDataPtr;

// The strings are unsigned: string literals need a cast.
typedef A_Err (*PF_PluginDataCB)(PF_PluginDataPtr inPtr, const A_u_char* inNamePtr,
                                 const A_u_char* inMatchNamePtr, const A_u_char* inCategoryPtr,
                                 const A_u_char* inEntryPointNamePtr, A_long inkind,
                                 A_long inApiVersionMajor, A_long inApiVersionMinor,
                                 A_long inReservedInfo);

// Same, with a trailing support URL.
typedef A_Err (*PF_PluginDataCB2)(PF_PluginDataPtr inPtr, const A_u_char* inNamePtr,
                                  const A_u_char* inMatchNamePtr, const A_u_char* inCategoryPtr,
                                  const A_u_char* inEntryPointNamePtr, A_long inkind,
                                  A_long inApiVersionMajor, A_long inApiVersionMinor,
                                  A_long inReservedInfo, const A_u_char* inSupportURLPtr);

typedef A_Err (*PluginDataEntryFunctionPtr)(PF_PluginDataPtr inPtr,
                                            PF_PluginDataCB inPluginDataCallBackPtr,
                                            SPBasicSuite* inSPBasicSuitePtr, const char* inHostName,
                                            const char* inHostVersion);

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
