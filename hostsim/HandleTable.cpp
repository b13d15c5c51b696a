#include "hostsim/HandleTable.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace hostsim {

namespace {

std::unique_ptr<uint8_t[]> FreshStorage(size_t size) {
  auto storage = std::make_unique<uint8_t[]>(std::max<size_t>(size, 1));
  std::memset(storage.get(), HandleTable::kFreshByte, size);
  return storage;
}

}  // namespace

HandleTable::Entry* HandleTable::Find(PF_Handle handle) const {
  const auto it = entries_.find(handle);
  return it == entries_.end() ? nullptr : it->second.get();
}

PF_Handle HandleTable::Insert(std::unique_ptr<Entry> entry) {
  const std::lock_guard lock(mutex_);
  entry->serial = ++allocations_;
  const PF_Handle handle = &entry->data;
  entries_.emplace(handle, std::move(entry));
  return handle;
}

void HandleTable::NoteMisuse(const std::string& what, PF_Handle handle) {
  char text[160];
  std::snprintf(text, sizeof text, "%s of unknown handle %p", what.c_str(),
                static_cast<void*>(handle));
  misuse_.emplace_back(text);
}

PF_Handle HandleTable::New(size_t size) {
  auto entry = std::make_unique<Entry>();
  entry->storage = FreshStorage(size);
  entry->data = entry->storage.get();
  entry->size = size;
  return Insert(std::move(entry));
}

PF_Handle HandleTable::NewWithoutData() {
  return Insert(std::make_unique<Entry>());
}

PF_Handle HandleTable::NewWithBytes(const std::vector<uint8_t>& bytes) {
  const PF_Handle handle = New(bytes.size());
  if (!bytes.empty()) std::memcpy(*handle, bytes.data(), bytes.size());
  return handle;
}

void* HandleTable::Lock(PF_Handle handle) {
  const std::lock_guard lock(mutex_);
  Entry* entry = Find(handle);
  if (entry == nullptr) {
    NoteMisuse("lock", handle);
    return nullptr;
  }
  ++entry->lockCount;
  return entry->data;
}

void HandleTable::Unlock(PF_Handle handle) {
  const std::lock_guard lock(mutex_);
  Entry* entry = Find(handle);
  if (entry == nullptr) {
    NoteMisuse("unlock", handle);
    return;
  }
  if (entry->lockCount == 0) {
    misuse_.push_back("unlock of a handle that is not locked");
    return;
  }
  --entry->lockCount;
}

bool HandleTable::Dispose(PF_Handle handle) {
  const std::lock_guard lock(mutex_);
  if (entries_.erase(handle) == 0) {
    NoteMisuse("dispose", handle);
    return false;
  }
  return true;
}

size_t HandleTable::Size(PF_Handle handle) {
  const std::lock_guard lock(mutex_);
  const Entry* entry = Find(handle);
  if (entry == nullptr) {
    NoteMisuse("size query", handle);
    return 0;
  }
  return entry->size;
}

bool HandleTable::Resize(PF_Handle handle, size_t size) {
  const std::lock_guard lock(mutex_);
  Entry* entry = Find(handle);
  if (entry == nullptr) {
    NoteMisuse("resize", handle);
    return false;
  }
  auto storage = FreshStorage(size);
  if (entry->data != nullptr) std::memcpy(storage.get(), entry->data, std::min(size, entry->size));
  entry->storage = std::move(storage);
  entry->data = entry->storage.get();
  entry->size = size;
  return true;
}

bool HandleTable::Contains(PF_Handle handle) const {
  const std::lock_guard lock(mutex_);
  return Find(handle) != nullptr;
}

std::vector<uint8_t> HandleTable::Bytes(PF_Handle handle) const {
  const std::lock_guard lock(mutex_);
  const Entry* entry = Find(handle);
  if (entry == nullptr || entry->data == nullptr) return {};
  const auto* data = static_cast<const uint8_t*>(entry->data);
  return std::vector<uint8_t>(data, data + entry->size);
}

std::vector<HandleInfo> HandleTable::Live() const {
  const std::lock_guard lock(mutex_);
  std::vector<HandleInfo> live;
  for (const auto& [handle, entry] : entries_) {
    live.push_back({handle, entry->size, entry->lockCount, entry->serial});
  }
  std::sort(live.begin(), live.end(),
            [](const HandleInfo& a, const HandleInfo& b) { return a.serial < b.serial; });
  return live;
}

size_t HandleTable::LiveCount() const {
  const std::lock_guard lock(mutex_);
  return entries_.size();
}

uint64_t HandleTable::Allocations() const {
  const std::lock_guard lock(mutex_);
  return allocations_;
}

std::vector<std::string> HandleTable::Misuse() const {
  const std::lock_guard lock(mutex_);
  return misuse_;
}

}  // namespace hostsim
