// PF_Cmd_EVENT: drawing of the curve graph and the header banner, and the about box on a double
// click on the banner.
#pragma once

#include <cstdint>

#include "sdk/HostInterface.h"

namespace morvane {

// Shows the effect's about box by writing its text into the output record (the host glue's
// ShowAbout). Passed in so that this library does not depend on the command dispatcher, which
// depends on it.
using ShowAboutFn = PF_Err (*)(const PF_InData* in_data, PF_OutData* out_data);

// Tells a double click from a single one by the clicks' times. Times are the host's unsigned
// 32-bit tick counts and are compared by unsigned difference, so they may wrap around.
class DoubleClickDetector {
 public:
  // Two clicks closer than this many ticks make a double click.
  static constexpr uint32_t kMaxInterval = 32;
  // The time of no earlier click: at module load and after every double click.
  static constexpr uint32_t kNoClick = 0xFFFFFFFF;

  // Records a click at `when`; true when it completes a double click, after which the next
  // click starts a new pair.
  bool Click(uint32_t when);

 private:
  uint32_t lastClick_ = kNoClick;
};

// The header banner's click history, kept for the life of the module. Only the host's
// user-interface thread, which delivers every event, reads or writes it.
DoubleClickDetector& HeaderClickDetector();

// Handles one custom-UI event in a host that declares the custom controls (interface 13.9 or
// later, or Premiere); returns PF_Err_NONE at once in any other. Draw events go to the header
// banner or the curve graph by the event's control index and area; a double click on the
// banner calls `showAbout` and asks the host to show the text. The drawing's result is the
// command's result; every other event does nothing.
PF_Err HandleCustomUIEvent(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                           PF_EventExtra* extra, ShowAboutFn showAbout);

}  // namespace morvane
