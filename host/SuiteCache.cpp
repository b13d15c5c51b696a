#include "host/SuiteCache.h"

#include <initializer_list>

#include "host/HostErrors.h"

namespace morvane {

SuiteCache::SuiteCache(const SPBasicSuite* basic) : basic_(basic) {
  if (basic_ == nullptr) ThrowHostError(PF_Err_BAD_CALLBACK_PARAM);
}

SuiteCache::~SuiteCache() {
  for (Slot* slot : {&handle_, &paramUtils_}) {
    if (slot->suite == nullptr) continue;
    try {
      basic_->ReleaseSuite(slot->name, slot->version);
    } catch (...) {
      // A release that fails cannot be reported from here; the command's own
      // result stands.
    }
  }
}

const void* SuiteCache::Acquire(Slot& slot) {
  if (slot.suite != nullptr) return slot.suite;
  const void* suite = nullptr;
  const SPErr err = basic_->AcquireSuite(slot.name, slot.version, &suite);
  if (err != PF_Err_NONE || suite == nullptr) ThrowHostError(PF_Err_BAD_CALLBACK_PARAM);
  slot.suite = suite;
  return suite;
}

const PF_HandleSuite1* SuiteCache::HandleSuite() {
  return static_cast<const PF_HandleSuite1*>(Acquire(handle_));
}

const PF_ParamUtilsSuite3* SuiteCache::ParamUtilsSuite() {
  return static_cast<const PF_ParamUtilsSuite3*>(Acquire(paramUtils_));
}

}  // namespace morvane
