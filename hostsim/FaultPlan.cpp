#include "hostsim/FaultPlan.h"

#include <stdexcept>

namespace hostsim {

namespace {

// Thrown by ThrowForeign: a type the effect cannot know.
struct ForeignHostException {
  int32_t error;
};

}  // namespace

std::string Callback(const std::string& group, const std::string& member) {
  return group + "." + member;
}

std::string SuiteFunction(const std::string& suite, int32_t version, const std::string& member) {
  return suite + " v" + std::to_string(version) + "." + member;
}

void FaultPlan::WithholdSuite(const std::string& name, int32_t version) {
  const std::lock_guard lock(mutex_);
  withheld_.emplace(name, version);
}

void FaultPlan::NullSuite(const std::string& name, int32_t version) {
  const std::lock_guard lock(mutex_);
  nulled_.emplace(name, version);
}

void FaultPlan::Fail(const std::string& function, int32_t error, int skip, int times) {
  Inject(function, Fault{FaultKind::ReturnError, error, skip, times});
}

void FaultPlan::Inject(const std::string& function, Fault fault) {
  const std::lock_guard lock(mutex_);
  faults_[function] = Armed{fault};
}

void FaultPlan::Clear() {
  const std::lock_guard lock(mutex_);
  withheld_.clear();
  nulled_.clear();
  faults_.clear();
}

bool FaultPlan::IsWithheld(const std::string& name, int32_t version) const {
  const std::lock_guard lock(mutex_);
  return withheld_.contains({name, version});
}

bool FaultPlan::IsNulled(const std::string& name, int32_t version) const {
  const std::lock_guard lock(mutex_);
  return nulled_.contains({name, version});
}

std::optional<int32_t> FaultPlan::Strike(const std::string& function) {
  Fault fault;
  {
    const std::lock_guard lock(mutex_);
    const auto it = faults_.find(function);
    if (it == faults_.end()) return std::nullopt;
    Armed& armed = it->second;
    const int call = armed.calls++;
    if (call < armed.fault.skip) return std::nullopt;
    if (armed.fault.times >= 0 && armed.struck >= armed.fault.times) return std::nullopt;
    ++armed.struck;
    fault = armed.fault;
  }
  switch (fault.kind) {
    case FaultKind::ReturnError:
      return fault.error;
    case FaultKind::ThrowInteger:
      throw static_cast<int>(fault.error);
    case FaultKind::ThrowStdException:
      throw std::runtime_error("simulated host failure in " + function);
    case FaultKind::ThrowForeign:
      throw ForeignHostException{fault.error};
  }
  return fault.error;
}

}  // namespace hostsim
