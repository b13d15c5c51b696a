// Host suites for the length of one command, each acquired on first use and
// released when the cache goes out of scope.
#pragma once

#include <cstdint>

#include "sdk/HostInterface.h"

namespace morvane {

class SuiteCache {
 public:
  // Raises PF_Err_BAD_CALLBACK_PARAM as an integer exception when `basic` is null.
  explicit SuiteCache(const SPBasicSuite* basic);
  // Releases every acquired suite under the name and version it was acquired
  // with; never throws.
  ~SuiteCache();

  SuiteCache(const SuiteCache&) = delete;
  SuiteCache& operator=(const SuiteCache&) = delete;

  // "PF Handle Suite" version 2. Raises PF_Err_BAD_CALLBACK_PARAM when the host
  // reports an error or hands back no suite.
  const PF_HandleSuite1* HandleSuite();
  // "PF Param Utils Suite" version 3; fails like HandleSuite.
  const PF_ParamUtilsSuite3* ParamUtilsSuite();

 private:
  struct Slot {
    const char* name;
    int32_t version;
    const void* suite;
  };

  const void* Acquire(Slot& slot);

  const SPBasicSuite* basic_;
  Slot handle_{kPFHandleSuite, kPFHandleSuiteVersion1, nullptr};
  Slot paramUtils_{kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, nullptr};
};

}  // namespace morvane
