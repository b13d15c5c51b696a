// The drawing surface of one custom-UI draw event: the Drawbot suites, the event's drawing
// reference and its supplier and surface, held for the extent of the event.
#pragma once

#include <cstdint>

#include "sdk/HostInterface.h"

namespace morvane {

// A straight-alpha BGRA picture, rows following each other directly.
struct BgraPicture {
  const uint8_t* pixels;
  int32_t width;
  int32_t height;
};

class EventDrawing {
 public:
  // Acquires the Drawbot suite set; when that worked, takes "PF Effect Custom UI Suite" 1 just
  // long enough to get the drawing reference of `contextH`, then asks the Draw suite for the
  // reference's supplier and surface. The first error met is kept in Error(); its message, if
  // any, is already in `out_data`.
  EventDrawing(PF_InData* in_data, PF_OutData* out_data, PF_ContextH contextH);
  // Gives the Drawbot suites back if they were acquired.
  ~EventDrawing();
  EventDrawing(const EventDrawing&) = delete;
  EventDrawing& operator=(const EventDrawing&) = delete;

  PF_Err Error() const { return err_; }

  // Makes a host image of `picture`, draws it with full opacity with its top-left corner at the
  // top-left corner of `frame` and releases the image again. Returns the first error met. Only
  // valid while Error() is PF_Err_NONE.
  PF_Err DrawPicture(const BgraPicture& picture, const PF_LRect& frame);

 private:
  PF_InData* in_data_;
  PF_OutData* out_data_;
  DRAWBOT_Suites suites_{};
  bool haveSuites_ = false;
  DRAWBOT_SupplierRef supplier_ = nullptr;
  DRAWBOT_SurfaceRef surface_ = nullptr;
  PF_Err err_ = PF_Err_NONE;
};

}  // namespace morvane
