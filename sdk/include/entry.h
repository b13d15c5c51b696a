// Export macro and registration helpers for the effect's entry points.
#ifndef ENTRY_H
#define ENTRY_H

#include <AEConfig.h>

#if defined(AE_OS_WIN)
#define DllExport __declspec(dllexport)
#else
#define DllExport __attribute__((visibility("default")))
#endif

// Name of the render entry point as registered with the host.
#define AE_ENTRY_POINT "EffectMain"
#define AE_RESERVED_INFO 8

// Registers an effect through the PF_PluginDataCB callback; stores the result
// in a local named `result`. name, matchName and category must already be
// `const A_u_char*`. Kind 0x65464B54 is 'eFKT'.
#define PF_REGISTER_EFFECT(inPtr, cb, name, matchName, category, reservedInfo)    \
  result = (*(cb))((inPtr), (name), (matchName), (category),                      \
                   reinterpret_cast<const A_u_char*>(AE_ENTRY_POINT), 0x65464B54, \
                   PF_AE_PLUG_IN_VERSION, PF_AE_PLUG_IN_SUBVERS, (reservedInfo))

#endif
