// The ordinary controls (everything but the header banner and the curve graph):
// their declaration order and the contents of their definitions.
#pragma once

#include <span>

#include "params/ParamId.h"
#include "sdk/HostInterface.h"

namespace morvane {

struct SliderDeclaration {
  PF_FpShort minimum;  // valid and slider minimum alike
  PF_FpShort maximum;  // valid and slider maximum alike
  PF_FpShort dephault;
  A_short precision;
  PF_ValueDisplayFlags displayFlags;
};

struct ControlDeclaration {
  ParamId id;
  const char* name;
  PF_ParamType type;
  PF_ParamFlags flags;
  const char* popupItems;    // popups: items separated by '|'
  A_short numChoices;        // popups
  SliderDeclaration slider;  // float sliders
};

// "Direction" through "Curve Smoothness", declared before the curve graph.
std::span<const ControlDeclaration> ControlsBeforeCurveGraph();
// "Stretch Start Offset" through "Transparency Feather", declared after it.
std::span<const ControlDeclaration> ControlsAfterCurveGraph();

// Fills `def` (cleared to zeros first) from the declaration, all but `name`,
// which the caller copies with the host's string copy.
void FillDefinition(const ControlDeclaration& control, PF_ParamDef& def);

}  // namespace morvane
