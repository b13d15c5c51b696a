// Every callback and suite function the effect called, in order.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace hostsim {

class CallLog {
 public:
  void Record(const std::string& function) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(function);
    ++counts_[function];
  }
  int Count(const std::string& function) const {
    const std::lock_guard lock(mutex_);
    const auto it = counts_.find(function);
    return it == counts_.end() ? 0 : it->second;
  }
  std::vector<std::string> Entries() const {
    const std::lock_guard lock(mutex_);
    return entries_;
  }
  size_t Size() const {
    const std::lock_guard lock(mutex_);
    return entries_.size();
  }
  void Clear() {
    const std::lock_guard lock(mutex_);
    entries_.clear();
    counts_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
  std::map<std::string, int> counts_;
};

}  // namespace hostsim
