// Reading a control by ParamId, wherever it sits in the host's list.
#pragma once

#include "params/ParamId.h"
#include "sdk/HostInterface.h"

namespace morvane {

// The control's position in the host's list; raises PF_Err_INVALID_INDEX (as
// an integer exception) when the parameter set-up never declared it.
PF_ParamIndex DeclaredPosition(ParamId id);

// The control's definition: the parameter array's own entry when the command
// supplied an array, otherwise a host checkout at the current time into
// `buffer` (which is then returned). A host error is raised as an integer
// exception (PF_Err). A definition checked out from the host must be checked in
// again; CheckedOutParam does both.
PF_ParamDef* CheckoutParamById(PF_InData* in_data, PF_ParamDef* params[], ParamId id,
                               PF_ParamDef& buffer);

// Always a host checkout at the current time into `buffer`, array or not.
// Raises a host error as an integer exception.
PF_ParamDef* CheckoutParamNow(PF_InData* in_data, ParamId id, PF_ParamDef& buffer);

// Reads one control through CheckoutParamById and, when the definition came
// from a host checkout, checks it in again when the object goes out of scope,
// also when the scope is left by an exception.
class CheckedOutParam {
 public:
  CheckedOutParam(PF_InData* in_data, PF_ParamDef* params[], ParamId id, PF_ParamDef& buffer);
  ~CheckedOutParam();
  CheckedOutParam(const CheckedOutParam&) = delete;
  CheckedOutParam& operator=(const CheckedOutParam&) = delete;

  const PF_ParamDef& operator*() const { return *def_; }
  const PF_ParamDef* operator->() const { return def_; }

 private:
  PF_InData* in_data_;
  PF_ParamDef* def_;
  bool fromHost_;
};

}  // namespace morvane
