// Frames the simulated host renders through the effect, and what comes back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hostsim/WorldStore.h"
#include "sdk/HostInterface.h"

namespace hostsim {

// A control named by its disk ID or by its name as shown to the user.
struct ControlRef {
  ControlRef(int32_t diskId) : id(diskId) {}  // implicit: controls are named inline
  ControlRef(const char* controlName) : name(controlName) {}
  ControlRef(std::string controlName) : name(std::move(controlName)) {}
  std::optional<int32_t> id;
  std::string name;
};

// The output image as the effect left it: the world's geometry and its bytes
// (rows `rowbytes` apart, padding included).
struct Image {
  int32_t width = 0;
  int32_t height = 0;
  int32_t rowbytes = 0;
  int32_t originX = 0;
  int32_t originY = 0;
  PixelDepth depth = PixelDepth::Bits8;
  std::vector<uint8_t> bytes;
};

// Every byte of an output world before the effect writes it.
inline constexpr uint8_t kUnwrittenByte = 0xA7;

// A layer control's image for one frame only, overriding the instance's.
struct FrameLayer {
  ControlRef control;
  const PF_EffectWorld* world = nullptr;  // null: none
};

// One frame of a smart render (After Effects).
struct SmartFrame {
  int32_t frame = 0;                      // current_time = frame × time step
  const PF_EffectWorld* input = nullptr;  // the layer's image, from Worlds(); required
  // The part of the layer wanted as output; the whole layer when empty.
  std::optional<PF_LRect> request;
  PF_RationalScale downsampleX{1, 1};
  PF_RationalScale downsampleY{1, 1};
  int32_t outputRowPadding = 24;  // bytes added to every output row
  std::vector<FrameLayer> layers;
};

struct SmartFrameResult {
  PF_Err preRenderErr = PF_Err_NONE;
  PF_Err renderErr = PF_Err_NONE;
  bool rendered = false;  // pre-render succeeded and the render command was sent
  PF_LRect resultRect{};
  PF_LRect maxResultRect{};
  std::string message;  // return_msg of the failing command, if it set one
  Image output;         // empty unless rendered
};

// One frame of a single-call render (Premiere).
struct LegacyFrame {
  int32_t frame = 0;
  const PF_EffectWorld* input = nullptr;  // the layer's image, from Worlds(); required
  PixelDepth depth = PixelDepth::Bits8;   // the output's format
  int32_t outputWidth = 0;                // 0: the input's size
  int32_t outputHeight = 0;
  int32_t outputRowPadding = 24;
  // PF_InData::width (0: the input's width); the render's scale is the output
  // width over this.
  int32_t layerWidth = 0;
  std::vector<FrameLayer> layers;
  // Makes the host report this format for the output instead of the depth's.
  std::optional<PrPixelFormat> reportedFormat;
};

struct LegacyFrameResult {
  PF_Err err = PF_Err_NONE;
  std::string message;
  Image output;
};

}  // namespace hostsim
