// The simulated host's side of custom-drawn controls: the Drawbot drawing suites, the custom UI
// suite's drawing reference, draw and click events in the Effect Controls panel, and the
// message box the host puts up after an event.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hostsim/Frames.h"
#include "hostsim/Host.h"
#include "sdk/HostInterface.h"

namespace hostsim {

// An image the effect made with the supplier's NewImageFromBuffer.
struct DrawnImage {
  int width = 0;
  int height = 0;
  int rowBytes = 0;
  DRAWBOT_PixelLayout layout = 0;
  std::vector<uint8_t> pixels;  // rowBytes * height bytes, copied when the image was made
  bool released = false;
};

// One DrawImage call on the panel's surface.
struct ImageDraw {
  std::size_t image;  // index into DrawbotRecord::images
  float x;
  float y;
  float opacity;
};

// Everything the effect did through the drawing suites since the host was made.
struct DrawbotRecord {
  std::vector<PF_ContextH> drawingReferences;  // the contexts asked about, in order
  std::vector<DrawnImage> images;
  std::vector<ImageDraw> draws;
  int releasedObjects = 0;  // ReleaseObject calls, including refused ones

  int LiveImages() const;
  // The picture of the last image drawn, or null.
  const DrawnImage* LastDrawn() const;
};

DrawbotRecord Drawbot(const Host& host);

// Where an event happens in the Effect Controls panel.
struct EffectWindow {
  PF_ParamIndex index = 0;
  PF_EffectArea area = PF_EA_CONTROL;
  PF_LRect currentFrame{};     // the control's frame
  PF_LRect paramTitleFrame{};  // its title row
};

// The panel's frames for the control at `index`: title row and control area as a host lays
// them out, the control area `width` x `height` pixels.
EffectWindow PanelWindow(PF_ParamIndex index, PF_EffectArea area, int32_t width, int32_t height);

struct EventAnswer {
  CommandResult result;
  PF_EventOutFlags outFlags = PF_EO_NONE;

  bool Handled() const { return (outFlags & PF_EO_HANDLED_EVENT) != 0; }
  // The text the host shows in a message box once the command returns (the about box after a
  // double click on the header banner): return_msg when the effect set
  // PF_OutFlag_DISPLAY_ERROR_MESSAGE and wrote something.
  std::optional<std::string> ShownMessage() const;
};

// Sends PF_Cmd_EVENT with PF_Event_DRAW for `window`, with the instance's parameter array at
// `frame`. Problems found (an image left unreleased, a stale drawing reference) go into the
// host's report.
EventAnswer SendDrawEvent(Host& host, EffectInstance& instance, const EffectWindow& window,
                          int32_t frame = 0);
// PF_Event_DO_CLICK at the host's tick count `when`.
EventAnswer SendClickEvent(Host& host, EffectInstance& instance, const EffectWindow& window,
                           A_u_long when, int32_t frame = 0);

}  // namespace hostsim
