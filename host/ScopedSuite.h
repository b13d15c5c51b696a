// One host suite held for the extent of a block.
#pragma once

#include <cstdint>

#include "sdk/HostInterface.h"

namespace morvane {

// The untyped part: acquisition, reporting and release.
class ScopedSuiteBase {
 public:
  ScopedSuiteBase(const ScopedSuiteBase&) = delete;
  ScopedSuiteBase& operator=(const ScopedSuiteBase&) = delete;

 protected:
  // If the host reports an error or hands back no suite: writes "Not able to
  // acquire AEFX Suite." into `out_data` when one is given, and in every case
  // raises A_Err_MISSING_SUITE as an integer exception.
  ScopedSuiteBase(const PF_InData* in_data, const char* name, int32_t version,
                  PF_OutData* out_data);
  // Releases the suite; never throws.
  ~ScopedSuiteBase();

  const void* suite_ = nullptr;

 private:
  const char* name_;
  int32_t version_;
  const SPBasicSuite* basic_;
};

// `Suite` is the host's table type for the requested name and version, e.g.
//   ScopedSuite<PF_HandleSuite1> handles(in_data, kPFHandleSuite, kPFHandleSuiteVersion1,
//   out_data); PF_Handle h = handles->host_new_handle(size);
template <typename Suite>
class ScopedSuite : private ScopedSuiteBase {
 public:
  ScopedSuite(const PF_InData* in_data, const char* name, int32_t version,
              PF_OutData* out_data = nullptr)
      : ScopedSuiteBase(in_data, name, version, out_data) {}

  const Suite* get() const { return static_cast<const Suite*>(suite_); }
  const Suite* operator->() const { return get(); }
};

}  // namespace morvane
