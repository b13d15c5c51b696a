// Scope-bound ownership and locking of host handles.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// A handle the effect allocated and has not yet handed to anyone: disposed of
// when the scope ends unless Release() gave it away.
class OwnedHandle {
 public:
  OwnedHandle(const PF_HandleSuite1* suite, A_HandleSize size)
      : suite_(suite), handle_(suite->host_new_handle(size)) {}
  ~OwnedHandle() {
    if (handle_ != nullptr) suite_->host_dispose_handle(handle_);
  }
  OwnedHandle(const OwnedHandle&) = delete;
  OwnedHandle& operator=(const OwnedHandle&) = delete;

  PF_Handle get() const { return handle_; }
  PF_Handle Release() {
    const PF_Handle handle = handle_;
    handle_ = nullptr;
    return handle;
  }

 private:
  const PF_HandleSuite1* suite_;
  PF_Handle handle_;
};

// A handle locked for the extent of a scope. get() is null when the host gave
// no memory (or there was no handle), and then nothing is unlocked.
class LockedHandle {
 public:
  LockedHandle(const PF_HandleSuite1* suite, PF_Handle handle)
      : suite_(suite),
        handle_(handle),
        data_(handle != nullptr ? suite->host_lock_handle(handle) : nullptr) {}
  ~LockedHandle() {
    if (data_ != nullptr) suite_->host_unlock_handle(handle_);
  }
  LockedHandle(const LockedHandle&) = delete;
  LockedHandle& operator=(const LockedHandle&) = delete;

  void* get() const { return data_; }

 private:
  const PF_HandleSuite1* suite_;
  PF_Handle handle_;
  void* data_;
};

}  // namespace morvane
