#include "host/SuiteAccess.h"

#include "host/Messages.h"

namespace morvane {

PF_Err AcquireSuiteOrReport(const PF_InData* in_data, PF_OutData* out_data, const char* name,
                            int32_t version, const char* message, const void** suite) {
  *suite = nullptr;
  const SPBasicSuite* basic = in_data != nullptr ? in_data->pica_basicP : nullptr;
  if (basic != nullptr && basic->AcquireSuite(name, version, suite) != PF_Err_NONE) {
    // A refusal counts as no suite, whatever the host left in the pointer.
    *suite = nullptr;
  }
  if (*suite != nullptr) return PF_Err_NONE;
  ReportToUser(in_data, out_data, message != nullptr ? message : kMsgSuiteAcquireFailed);
  return PF_Err_BAD_CALLBACK_PARAM;
}

PF_Err ReleaseSuiteOrReport(const PF_InData* in_data, PF_OutData* out_data, const char* name,
                            int32_t version, const char* message) {
  const SPBasicSuite* basic = in_data != nullptr ? in_data->pica_basicP : nullptr;
  if (basic == nullptr) {
    ReportToUser(in_data, out_data, message != nullptr ? message : kMsgSuiteReleaseFailed);
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  basic->ReleaseSuite(name, version);
  return PF_Err_NONE;
}

}  // namespace morvane
