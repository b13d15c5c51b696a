#include "params/DrawbotSuites.h"

#include <cstddef>
#include <cstdint>

#include "host/Messages.h"

namespace morvane {
namespace {

struct DrawbotSuiteSlot {
  const char* name;
  int32_t version;
};

// The acquisition order; releases use the same names and versions.
constexpr DrawbotSuiteSlot kDrawbotSuites[] = {
    {kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1},
    {kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1},
    {kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2},
    {kDRAWBOT_PathSuite, kDRAWBOT_PathSuite_Version1},
};
constexpr std::size_t kDrawbotSuiteCount = sizeof kDrawbotSuites / sizeof kDrawbotSuites[0];

// Stores an acquired suite in the member of the set that belongs to slot `slot`.
void StoreSuite(DRAWBOT_Suites& suites, std::size_t slot, const void* suite) {
  switch (slot) {
    case 0:
      suites.drawbot_suiteP = static_cast<DRAWBOT_DrawbotSuite1*>(const_cast<void*>(suite));
      break;
    case 1:
      suites.supplier_suiteP = static_cast<DRAWBOT_SupplierSuite1*>(const_cast<void*>(suite));
      break;
    case 2:
      suites.surface_suiteP = static_cast<DRAWBOT_SurfaceSuite2*>(const_cast<void*>(suite));
      break;
    default:
      suites.path_suiteP = static_cast<DRAWBOT_PathSuite1*>(const_cast<void*>(suite));
      break;
  }
}

}  // namespace

PF_Err AEFX_AcquireDrawbotSuites(const PF_InData* in_data, PF_OutData* out_data,
                                 DRAWBOT_Suites* suites) {
  if (suites == nullptr) {
    ReportToUser(in_data, out_data, kMsgNullDrawbotSuite);
    return PF_Err_UNRECOGNIZED_PARAM_TYPE;
  }
  *suites = DRAWBOT_Suites{};
  const SPBasicSuite* basic = in_data != nullptr ? in_data->pica_basicP : nullptr;
  if (basic == nullptr) {
    ReportToUser(in_data, out_data, kMsgSuiteAcquireFailed);
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  for (std::size_t slot = 0; slot < kDrawbotSuiteCount; ++slot) {
    const void* suite = nullptr;
    const SPErr err =
        basic->AcquireSuite(kDrawbotSuites[slot].name, kDrawbotSuites[slot].version, &suite);
    if (err != 0 || suite == nullptr) {
      // Give back what was taken so far: the caller holds nothing after a failure.
      for (std::size_t taken = 0; taken < slot; ++taken) {
        basic->ReleaseSuite(kDrawbotSuites[taken].name, kDrawbotSuites[taken].version);
      }
      *suites = DRAWBOT_Suites{};
      ReportToUser(in_data, out_data, kMsgSuiteAcquireFailed);
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    StoreSuite(*suites, slot, suite);
  }
  return PF_Err_NONE;
}

PF_Err AEFX_ReleaseDrawbotSuites(const PF_InData* in_data, PF_OutData* out_data) {
  const SPBasicSuite* basic = in_data != nullptr ? in_data->pica_basicP : nullptr;
  for (const DrawbotSuiteSlot& slot : kDrawbotSuites) {
    if (basic == nullptr) {
      ReportToUser(in_data, out_data, kMsgSuiteReleaseFailed);
    } else {
      basic->ReleaseSuite(slot.name, slot.version);
    }
  }
  return PF_Err_NONE;
}

}  // namespace morvane
