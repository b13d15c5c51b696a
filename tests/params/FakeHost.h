// A small in-process stand-in for the host's parameter and smart-render callbacks, for tests that
// call the effect's functions directly. The callbacks find their FakeHost through `effect_ref`.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "sdk/HostInterface.h"

namespace morvane::testing {

class FakeHost {
 public:
  FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  static FakeHost& From(PF_ProgPtr effect_ref);

  PF_InData in_data{};
  PF_OutData out_data{};

  // --- Parameter set-up (After Effects 13.27) ---------------------------------
  std::vector<PF_ParamDef> added;

  // After set-up: the host's parameter list as declared (position 0 the input
  // layer), with every value at its default.
  std::vector<PF_ParamDef> list;
  void BuildListFromAdded();
  PF_ParamDef& At(A_long position) { return list.at(static_cast<std::size_t>(position)); }
  // An array of pointers into `list`, as the host passes with a command.
  std::vector<PF_ParamDef*> ParamArray();

  // --- checkout_param / checkin_param --------------------------------------
  std::vector<A_long> checkouts;              // positions, in call order
  std::vector<const PF_ParamDef*> checkedIn;  // buffers handed back
  std::map<A_long, PF_Err> checkoutErrors;    // position -> error
  int OpenCheckouts() const {
    return static_cast<int>(checkouts.size()) - failedCheckouts -
           static_cast<int>(checkedIn.size());
  }
  int failedCheckouts = 0;

  // --- Smart render callbacks ----------------------------------------------
  struct LayerCheckout {
    A_long index;
    A_long id;
    PF_RenderRequest request;
  };
  std::vector<LayerCheckout> layerCheckouts;
  std::map<A_long, PF_Err> layerCheckoutErrors;  // parameter index -> error
  PF_LRect checkoutResultRect{};
  PF_LRect checkoutMaxResultRect{};
  std::map<A_long, PF_EffectWorld*> pixels;  // checkout id -> world handed out
  std::map<A_long, PF_Err> pixelsErrors;     // checkout id -> error
  std::vector<A_long> pixelsCheckedIn;
  PF_PreRenderCallbacks preRenderCallbacks{};
  PF_SmartRenderCallbacks smartRenderCallbacks{};

 private:
  PF_UtilCallbacks utils_{};
};

}  // namespace morvane::testing
