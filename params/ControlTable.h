// Every control of the effect, described once: what the host is given to declare, in which
// order, where a render stores the value in its record and in which order it reads them. The
// host declarations, the render read-out, the frei0r parameters and the defaults of every
// record are all made from this table.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "params/ParamId.h"
#include "render/StretchRenderRecord.h"
#include "sdk/HostInterface.h"

namespace morvane {

enum class ControlKind : uint8_t {
  Header,      // the banner: custom UI, no value
  Layer,       // the "Intensity Source" layer
  Popup,       // stored 0-based
  Slider,      // a float slider
  Angle,       // 16.16 fixed-point degrees
  Checkbox,    // 0 or 1
  CurveGraph,  // custom UI, no value
};

struct SliderRange {
  PF_FpShort minimum;  // valid and slider minimum alike
  PF_FpShort maximum;  // valid and slider maximum alike
  PF_FpShort dephault;
  A_short precision;
  PF_ValueDisplayFlags displayFlags;
};

// Where a render stores a control's value: a whole-number field (truncated toward zero) or a
// real one; both null for controls without a value in the record.
struct RecordField {
  int32_t StretchRenderRecord::*whole = nullptr;
  double StretchRenderRecord::*real = nullptr;
};

struct Control {
  ParamId id;
  const char* name;
  ControlKind kind;
  PF_ParamFlags flags;
  const char* popupItems;  // popups: items separated by '|'
  SliderRange slider;      // sliders
  int readOrder;           // place in the render's read-out; -1 when a render reads no value
  RecordField field;
  const char* summary;  // what the control does, in a few words
};

// Every control in declaration order, the header banner first.
std::span<const Control> Controls();

// The controls a render reads a value from, in the order it reads them.
std::span<const Control* const> ControlsInReadOrder();

// The controls with a value a user sets (popups, sliders, angles, the checkbox), in declaration
// order.
std::span<const Control* const> ValueControls();

// Number of items of a popup (0 for other kinds).
A_short PopupItemCount(const Control& control);

// The items of a popup in popup order (none for other kinds).
std::vector<std::string_view> PopupItems(const Control& control);

// A value in the control's own units: the 0-based item of a popup, a slider's value, 16.16
// degrees for an angle, 0 or 1 for the checkbox. The default is the declared one.
double DefaultValue(const Control& control);

// A slider's end or default as the decimal number its single-precision declaration was written
// as (0.01, not 0.0099999998): what hosts that take doubles are given.
double WrittenDecimal(PF_FpShort value);

// A host definition's value in the control's own units (popups arrive 1-based).
double ValueOf(const Control& control, const PF_ParamDef& def);

// Stores `value`, in the control's own units, in the control's field of `record`.
void StoreValue(const Control& control, double value, StretchRenderRecord& record);

// The record every control at its default gives; no intensity layer.
StretchRenderRecord DefaultRecord();

// Fills `def` (cleared to zeros first) for an ordinary control (not the header or the curve
// graph), all but `name`, which the caller copies with the host's string copy.
void FillDefinition(const Control& control, PF_ParamDef& def);

}  // namespace morvane
