// Failures the simulated host injects on request, so that every error path of
// the effect can be driven from a test.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace hostsim {

// Names under which callbacks and suite functions are addressed.
//   Callback("utils", "host_new_handle"), Callback("inter", "add_param"),
//   Callback("basic", "AcquireSuite"), Callback("registration", "PF_PluginDataCB")
//   SuiteFunction("PF Handle Suite", 2, "host_lock_handle")
std::string Callback(const std::string& group, const std::string& member);
std::string SuiteFunction(const std::string& suite, int32_t version, const std::string& member);

enum class FaultKind {
  ReturnError,        // return the error (a pointer-returning function returns null,
                      // a void function does nothing)
  ThrowInteger,       // throw the error value as an int, as a host never would
  ThrowStdException,  // throw std::runtime_error
  ThrowForeign,       // throw an object of a type unknown to the effect
};

struct Fault {
  FaultKind kind = FaultKind::ReturnError;
  int32_t error = 0;
  int skip = 0;    // calls that succeed before the fault strikes
  int times = -1;  // how often it strikes; -1: every call after `skip`
};

class FaultPlan {
 public:
  // AcquireSuite reports the suite as missing.
  void WithholdSuite(const std::string& name, int32_t version);
  // AcquireSuite reports success but hands back no suite.
  void NullSuite(const std::string& name, int32_t version);
  // Any callback or suite function, named as above.
  void Fail(const std::string& function, int32_t error, int skip = 0, int times = -1);
  void Inject(const std::string& function, Fault fault);
  void Clear();

  bool IsWithheld(const std::string& name, int32_t version) const;
  bool IsNulled(const std::string& name, int32_t version) const;

  // Called by the host on every call of `function`: the fault to apply now, if
  // any. Throwing kinds are thrown from here.
  std::optional<int32_t> Strike(const std::string& function);

 private:
  struct Armed {
    Fault fault;
    int calls = 0;
    int struck = 0;
  };
  mutable std::mutex mutex_;
  std::set<std::pair<std::string, int32_t>> withheld_;
  std::set<std::pair<std::string, int32_t>> nulled_;
  std::map<std::string, Armed> faults_;
};

}  // namespace hostsim
