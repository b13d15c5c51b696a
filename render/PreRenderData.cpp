#include "render/PreRenderData.h"

namespace morvane {

void DeletePreRenderData(void* pre_render_data) {
  if (pre_render_data == nullptr) return;
  const PF_Handle handle = static_cast<PF_Handle>(pre_render_data);
  // The handle's master pointer leads to the block; the host is done with it.
  const auto* data = static_cast<const PreRenderData*>(*handle);
  if (data == nullptr) return;
  const auto dispose = data->disposeHandle;
  dispose(handle);
}

}  // namespace morvane
