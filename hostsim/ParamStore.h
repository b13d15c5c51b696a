// The host's side of the effect's controls: checks the declared list as a host
// does, and keeps each instance's values over time, UI state and layers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sdk/HostInterface.h"

namespace hostsim {

// Problems a host finds in a declared parameter list (position 0 is the input
// layer): unknown types, bad ranges and defaults, popup item counts, repeated
// or missing disk IDs. Empty when the list is sound.
std::vector<std::string> ValidateParamList(const std::vector<PF_ParamDef>& params);

// A value at a frame (fractional frames are allowed).
struct Keyframe {
  double frame;
  double value;
};

// One control's value over time: a constant, or keyframes that are
// interpolated linearly (sliders, angles) or held (popups, checkbox).
class ParamTrack {
 public:
  ParamTrack() = default;
  explicit ParamTrack(double constant) : keys_{{0.0, constant}} {}
  // Keys in any order; sorted by frame here. At least one key.
  explicit ParamTrack(std::vector<Keyframe> keys);

  double At(double frame, bool interpolate) const;
  const std::vector<Keyframe>& Keys() const { return keys_; }

 private:
  std::vector<Keyframe> keys_;
};

// One effect instance's controls. Values are given in the units a user sees:
// popups as 1-based item numbers, angles in degrees, the checkbox as 0 or 1.
class InstanceParams {
 public:
  // Starts every control at its declared default.
  void Reset(const std::vector<PF_ParamDef>& declared);
  bool Ready() const { return !declared_.empty(); }
  size_t Count() const { return declared_.size(); }

  // Position of the control with this disk ID or name; throws std::out_of_range.
  PF_ParamIndex FindById(int32_t diskId) const;
  PF_ParamIndex FindByName(const std::string& name) const;
  // The 1-based number of a popup item; throws std::out_of_range.
  double PopupItem(PF_ParamIndex index, const std::string& item) const;

  // Throws std::invalid_argument for a value the host would not accept
  // (outside a slider's valid range, a popup item that does not exist, a
  // control without a value).
  void Set(PF_ParamIndex index, ParamTrack track);
  // The layer a layer control refers to (null: none). Not owned.
  void SetLayer(PF_ParamIndex index, const PF_EffectWorld* world);
  const PF_EffectWorld* Layer(PF_ParamIndex index) const;

  PF_ParamUIFlags UIFlags(PF_ParamIndex index) const;
  void SetUIFlags(PF_ParamIndex index, PF_ParamUIFlags flags);

  const PF_ParamDef& Declared(PF_ParamIndex index) const;
  // The definition the host hands out for `frame`: the declared one with the
  // value at that frame, the current UI flags and, for layers, the image.
  PF_ParamDef DefinitionAt(PF_ParamIndex index, double frame) const;

 private:
  struct Control {
    ParamTrack track;
    const PF_EffectWorld* layer = nullptr;
    PF_ParamUIFlags uiFlags = 0;
  };
  void CheckIndex(PF_ParamIndex index) const;

  std::vector<PF_ParamDef> declared_;
  std::vector<Control> controls_;
};

}  // namespace hostsim
