#include "host/ScopedSuite.h"

#include "host/HostErrors.h"
#include "host/Messages.h"

namespace morvane {

ScopedSuiteBase::ScopedSuiteBase(const PF_InData* in_data, const char* name, int32_t version,
                                 PF_OutData* out_data)
    : name_(name), version_(version), basic_(in_data != nullptr ? in_data->pica_basicP : nullptr) {
  const void* suite = nullptr;
  const SPErr err = basic_ != nullptr ? basic_->AcquireSuite(name_, version_, &suite) : PF_Err_NONE;
  if (err != PF_Err_NONE || suite == nullptr) {
    if (out_data != nullptr) ReportToUser(in_data, out_data, kMsgSuiteAcquireFailed);
    ThrowHostError(A_Err_MISSING_SUITE);
  }
  suite_ = suite;
}

ScopedSuiteBase::~ScopedSuiteBase() {
  try {
    basic_->ReleaseSuite(name_, version_);
  } catch (...) {
    // Nothing may leave a destructor; the command's own result stands.
  }
}

}  // namespace morvane
