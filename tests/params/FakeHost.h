// A small in-test stand-in for the host's callbacks and suites. The C callbacks
// find their FakeHost through `effect_ref`; the basic suite, which has no such
// argument, finds the FakeHost of the current thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "sdk/HostInterface.h"

namespace morvane::testing {

class FakeHost {
 public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  static FakeHost& From(PF_ProgPtr effect_ref);

  PF_InData in_data{};
  PF_OutData out_data{};

  // Host kind and interface version seen by the effect.
  void SetHost(A_long applId, A_short major, A_short minor);

  // --- Parameter set-up -----------------------------------------------------
  std::vector<PF_ParamDef> added;
  std::vector<std::string> addedNames;
  std::vector<PF_CustomUIInfo> registeredUI;
  std::map<A_long, PF_Err> refuseAdd;  // disk ID -> error answered by add_param

  // After set-up: the host's parameter list as declared (position 0 the input
  // layer), with every value at its default.
  std::vector<PF_ParamDef> list;
  void BuildListFromAdded();
  PF_ParamDef& At(A_long position) { return list.at(static_cast<std::size_t>(position)); }
  // An array of pointers into `list`, as the host passes with a command.
  std::vector<PF_ParamDef*> ParamArray();

  // --- checkout_param / checkin_param --------------------------------------
  std::vector<A_long> checkouts;  // positions, in call order
  struct Time {
    A_long time;
    A_long step;
    A_u_long scale;
  };
  std::vector<Time> checkoutTimes;
  std::vector<const PF_ParamDef*> checkedIn;  // buffers handed back
  std::map<A_long, PF_Err> checkoutErrors;    // position -> error
  int OpenCheckouts() const {
    return static_cast<int>(checkouts.size()) - failedCheckouts -
           static_cast<int>(checkedIn.size());
  }
  int failedCheckouts = 0;

  // --- "PF Param Utils Suite" 3 ------------------------------------------
  bool offerParamUtils = true;
  struct UIUpdate {
    A_long position;
    PF_ParamUIFlags uiFlags;
  };
  std::vector<UIUpdate> uiUpdates;
  std::map<std::size_t, PF_Err> uiUpdateErrors;  // call number (0-based) -> error

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
  std::vector<A_long> pixelsCheckedOut;
  std::vector<A_long> pixelsCheckedIn;
  PF_PreRenderCallbacks preRenderCallbacks{};
  PF_SmartRenderCallbacks smartRenderCallbacks{};

  // Suites acquired and released through the basic suite, by name.
  std::map<std::string, int> acquired;
  std::map<std::string, int> released;
  // Suites the basic suite hands out, by "name/version".
  std::map<std::string, const void*> extraSuites;
  void OfferSuite(const char* name, int32_t version, const void* suite);

 private:
  PF_UtilCallbacks utils_{};
  SPBasicSuite basic_{};
  PF_ParamUtilsSuite3 paramUtils_{};
};

}  // namespace morvane::testing
