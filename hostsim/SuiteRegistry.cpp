#include "hostsim/SuiteRegistry.h"

#include "hostsim/FaultPlan.h"

namespace hostsim {

void SuiteRegistry::Register(const std::string& name, int32_t version, const void* table) {
  const std::lock_guard lock(mutex_);
  tables_[{name, version}] = table;
}

bool SuiteRegistry::Has(const std::string& name, int32_t version) const {
  const std::lock_guard lock(mutex_);
  return tables_.contains({name, version});
}

int32_t SuiteRegistry::Acquire(const char* name, int32_t version, const void** suite,
                               FaultPlan& faults) {
  if (suite == nullptr) return kSuiteNotFound;
  *suite = nullptr;
  if (name == nullptr) return kSuiteNotFound;
  const std::string suiteName(name);
  if (const auto err = faults.Strike(Callback("basic", "AcquireSuite"))) return *err;
  if (faults.IsWithheld(suiteName, version)) return kSuiteNotFound;
  const std::lock_guard lock(mutex_);
  const auto it = tables_.find({suiteName, version});
  if (it == tables_.end()) return kSuiteNotFound;
  // A suite handed back as null answers "no error" but is not counted as held.
  if (faults.IsNulled(suiteName, version)) return 0;
  ++counts_[{suiteName, version}].acquired;
  events_.push_back({SuiteEvent::Acquired, {suiteName, version}});
  *suite = it->second;
  return 0;
}

int32_t SuiteRegistry::Release(const char* name, int32_t version) {
  if (name == nullptr) return kSuiteNotFound;
  const std::lock_guard lock(mutex_);
  ++counts_[{name, version}].released;
  events_.push_back({SuiteEvent::Released, {name, version}});
  return tables_.contains({name, version}) ? 0 : kSuiteNotFound;
}

int SuiteRegistry::Acquisitions(const std::string& name, int32_t version) const {
  const std::lock_guard lock(mutex_);
  const auto it = counts_.find({name, version});
  return it == counts_.end() ? 0 : it->second.acquired;
}

int SuiteRegistry::Releases(const std::string& name, int32_t version) const {
  const std::lock_guard lock(mutex_);
  const auto it = counts_.find({name, version});
  return it == counts_.end() ? 0 : it->second.released;
}

std::vector<SuiteBalance> SuiteRegistry::Balances() const {
  const std::lock_guard lock(mutex_);
  std::vector<SuiteBalance> out;
  for (const auto& [key, c] : counts_)
    out.push_back({key, c.acquired, c.released});
  return out;
}

std::vector<SuiteBalance> SuiteRegistry::Unbalanced() const {
  std::vector<SuiteBalance> out;
  for (const SuiteBalance& b : Balances()) {
    if (b.acquired != b.released) out.push_back(b);
  }
  return out;
}

std::vector<SuiteEvent> SuiteRegistry::Events() const {
  const std::lock_guard lock(mutex_);
  return events_;
}

void SuiteRegistry::ResetCounts() {
  const std::lock_guard lock(mutex_);
  counts_.clear();
  events_.clear();
}

}  // namespace hostsim
