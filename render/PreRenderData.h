// The data a frame carries from smart pre-render to smart render.
#pragma once

#include "render/StretchRenderRecord.h"
#include "sdk/HostInterface.h"

namespace morvane {

// Lives in a host handle allocated at pre-render. The host frees it through
// DeletePreRenderData, which receives only the handle: no input record, so no
// way to reach a suite. Rather than remembering the host's disposal routine in
// process-wide state (several hosts' frames may be in flight on several
// threads), each block carries the routine that disposes of its own handle.
struct PreRenderData {
  StretchRenderRecord record;
  void (*disposeHandle)(PF_Handle handle);
};

// Handed to the host as `delete_pre_render_data_func`: disposes of the handle
// that holds a PreRenderData through the routine stored in it.
void DeletePreRenderData(void* pre_render_data);

}  // namespace morvane
