// The effect's single gateway to the host interface. Includes the host's
// headers by their real names, in an order that also suits the host's own SDK
// (AEConfig.h first: entry.h and PrSDKAESupport.h depend on it), and checks the
// binary layout of every shared record in each translation unit.
#pragma once

// clang-format off
#include <AEConfig.h>
#include <entry.h>
#include <AE_Effect.h>
#include <AE_EffectCB.h>
#include <AE_EffectCBSuites.h>
#include <AE_EffectSuites.h>
#include <AE_EffectUI.h>
#include <AE_EffectPixelFormat.h>
#include <AE_Macros.h>
#include <AE_PluginData.h>
#include <SPBasic.h>
#include <adobesdk/DrawbotSuite.h>
#include <PrSDKAESupport.h>
// clang-format on

#include "HostInterfaceLayout.h"
