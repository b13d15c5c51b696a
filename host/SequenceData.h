// Per-instance sequence data: one host handle of kSequenceDataSize zero bytes
// that carries no settings. Its flat form is its live form.
#pragma once

#include "sdk/HostInterface.h"

namespace morvane {

// PF_Cmd_SEQUENCE_SETUP.
PF_Err SequenceSetup(PF_InData* in_data, PF_OutData* out_data);
// PF_Cmd_SEQUENCE_RESETUP: set-up only when the host passes no data.
PF_Err SequenceResetup(PF_InData* in_data, PF_OutData* out_data);
// PF_Cmd_SEQUENCE_FLATTEN: replaces the data by a fresh copy.
PF_Err SequenceFlatten(const PF_InData* in_data, PF_OutData* out_data);
// PF_Cmd_SEQUENCE_SETDOWN.
PF_Err SequenceSetdown(PF_InData* in_data, PF_OutData* out_data);
// PF_Cmd_GET_FLATTENED_SEQUENCE_DATA: a copy for the host; the instance keeps
// its own handle.
PF_Err GetFlattenedSequenceData(const PF_InData* in_data, PF_OutData* out_data);

}  // namespace morvane
