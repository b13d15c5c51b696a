#include "host/SequenceData.h"

#include <cstring>

#include "host/EffectIdentity.h"
#include "host/Messages.h"
#include "host/SuiteCache.h"

namespace morvane {

namespace {

enum class OldHandle { Dispose, Keep };

// A fresh handle holding a copy of the instance's data, stored as the output
// record's sequence data.
PF_Err CopySequenceData(const PF_InData* in_data, PF_OutData* out_data, OldHandle old) {
  const PF_Handle current = in_data->sequence_data;
  if (current == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  if (*current == nullptr) return PF_Err_NONE;

  SuiteCache suites(in_data->pica_basicP);
  const PF_HandleSuite1* handles = suites.HandleSuite();
  const PF_Handle copy = handles->host_new_handle(kSequenceDataSize);
  if (copy == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  void* data = handles->host_lock_handle(copy);
  if (data == nullptr) {
    // Nothing to hand over; do not leave the unusable handle behind.
    handles->host_dispose_handle(copy);
    return PF_Err_NONE;
  }
  // A saved project may hand back a shorter handle than the 296 bytes this
  // effect writes (an older or damaged project): copy only what it holds and
  // leave the rest zero, never reading past the old handle's end.
  std::memset(data, 0, kSequenceDataSize);
  const A_HandleSize oldSize = handles->host_get_handle_size(current);
  std::memcpy(data, *current, oldSize < kSequenceDataSize ? oldSize : kSequenceDataSize);

  if (old == OldHandle::Dispose) handles->host_dispose_handle(current);
  out_data->sequence_data = copy;
  handles->host_unlock_handle(copy);
  return PF_Err_NONE;
}

}  // namespace

PF_Err SequenceSetup(PF_InData* in_data, PF_OutData* out_data) {
  const PF_UtilCallbacks* utils = in_data->utils;
  if (in_data->sequence_data != nullptr) {
    if (utils->host_get_handle_size(in_data->sequence_data) != kSequenceDataSize) {
      utils->host_resize_handle(kSequenceDataSize, &in_data->sequence_data);
    }
    return PF_Err_NONE;
  }

  const PF_Handle handle = utils->host_new_handle(kSequenceDataSize);
  if (handle == nullptr) {
    ReportToUserCopied(in_data, out_data, kMsgInternalError);
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  out_data->sequence_data = handle;
  out_data->flat_sdata_size = kSequenceDataSize;
  if (void* data = utils->host_lock_handle(handle)) {
    std::memset(data, 0, kSequenceDataSize);
    utils->host_unlock_handle(handle);
  }
  return PF_Err_NONE;
}

PF_Err SequenceResetup(PF_InData* in_data, PF_OutData* out_data) {
  if (in_data->sequence_data != nullptr) return PF_Err_NONE;
  return SequenceSetup(in_data, out_data);
}

PF_Err SequenceFlatten(const PF_InData* in_data, PF_OutData* out_data) {
  return CopySequenceData(in_data, out_data, OldHandle::Dispose);
}

PF_Err GetFlattenedSequenceData(const PF_InData* in_data, PF_OutData* out_data) {
  return CopySequenceData(in_data, out_data, OldHandle::Keep);
}

PF_Err SequenceSetdown(PF_InData* in_data, PF_OutData* out_data) {
  if (in_data->sequence_data != nullptr)
    in_data->utils->host_dispose_handle(in_data->sequence_data);
  in_data->sequence_data = nullptr;
  out_data->sequence_data = nullptr;
  return PF_Err_NONE;
}

}  // namespace morvane
