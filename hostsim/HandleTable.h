// The host's memory handles: relocatable blocks reached through a master
// pointer (PF_Handle is a pointer to the data pointer), with leak tracking.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "sdk/HostInterface.h"

namespace hostsim {

struct HandleInfo {
  PF_Handle handle;
  size_t size;
  int lockCount;
  uint64_t serial;  // allocation order, from 1
};

class HandleTable {
 public:
  // Fresh memory is filled with 0xCD, as a real host does not clear it.
  static constexpr uint8_t kFreshByte = 0xCD;

  HandleTable() = default;
  HandleTable(const HandleTable&) = delete;
  HandleTable& operator=(const HandleTable&) = delete;

  PF_Handle New(size_t size);
  // A handle whose master pointer is null, as a purged handle is.
  PF_Handle NewWithoutData();
  // A handle holding `bytes`.
  PF_Handle NewWithBytes(const std::vector<uint8_t>& bytes);

  // Unknown handles are recorded as misuse and answered with null / 0 / false.
  void* Lock(PF_Handle handle);
  void Unlock(PF_Handle handle);
  bool Dispose(PF_Handle handle);
  size_t Size(PF_Handle handle);
  // Keeps the handle, moves the data; new bytes are filled with kFreshByte.
  bool Resize(PF_Handle handle, size_t size);

  bool Contains(PF_Handle handle) const;
  std::vector<uint8_t> Bytes(PF_Handle handle) const;
  std::vector<HandleInfo> Live() const;
  size_t LiveCount() const;
  uint64_t Allocations() const;
  std::vector<std::string> Misuse() const;

 private:
  struct Entry {
    void* data = nullptr;  // the master pointer: PF_Handle points here
    std::unique_ptr<uint8_t[]> storage;
    size_t size = 0;
    int lockCount = 0;
    uint64_t serial = 0;
  };

  Entry* Find(PF_Handle handle) const;  // caller holds mutex_
  PF_Handle Insert(std::unique_ptr<Entry> entry);
  void NoteMisuse(const std::string& what, PF_Handle handle);

  mutable std::mutex mutex_;
  std::unordered_map<PF_Handle, std::unique_ptr<Entry>> entries_;
  uint64_t allocations_ = 0;
  std::vector<std::string> misuse_;
};

}  // namespace hostsim
