// The suites the host serves through its basic suite, with a count of
// acquisitions and releases per name and version.
#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace hostsim {

class FaultPlan;

struct SuiteKey {
  std::string name;
  int32_t version;
  auto operator<=>(const SuiteKey&) const = default;
};

struct SuiteEvent {
  enum Kind { Acquired, Released } kind;
  SuiteKey key;
};

struct SuiteBalance {
  SuiteKey key;
  int acquired;
  int released;
};

class SuiteRegistry {
 public:
  // The value AcquireSuite returns for a suite the host does not have ('S!Fd').
  static constexpr int32_t kSuiteNotFound = 0x53214664;

  void Register(const std::string& name, int32_t version, const void* table);
  bool Has(const std::string& name, int32_t version) const;

  // The basic suite's AcquireSuite / ReleaseSuite, with `faults` applied.
  int32_t Acquire(const char* name, int32_t version, const void** suite, FaultPlan& faults);
  int32_t Release(const char* name, int32_t version);

  int Acquisitions(const std::string& name, int32_t version) const;
  int Releases(const std::string& name, int32_t version) const;
  // Every name and version asked for, in key order.
  std::vector<SuiteBalance> Balances() const;
  // Those acquired more or less often than released.
  std::vector<SuiteBalance> Unbalanced() const;
  // Every successful acquisition and every release, in order.
  std::vector<SuiteEvent> Events() const;
  void ResetCounts();

 private:
  struct Counts {
    int acquired = 0;
    int released = 0;
  };
  mutable std::mutex mutex_;
  std::map<SuiteKey, const void*> tables_;
  std::map<SuiteKey, Counts> counts_;
  std::vector<SuiteEvent> events_;
};

}  // namespace hostsim
