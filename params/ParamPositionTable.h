// Where each control landed in the host's parameter list. Two controls are
// declared only in some hosts, so positions depend on the host; every reader
// names a control by its ParamId and looks its position up here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "params/ParamId.h"

namespace morvane {

// An ordered map from ParamId to position. Position 0 is always the host's
// input layer, which the effect does not declare and which has no entry.
class ParamPositionTable {
 public:
  // Gives `id` the next position: the number of ids registered so far plus 1.
  void Register(ParamId id);
  // The position of `id`, or 0 when it has none. Never inserts: render threads
  // read the table concurrently without a lock.
  int32_t Position(ParamId id) const;
  std::size_t Size() const { return positions_.size(); }
  // Empties the table for a new set-up.
  void Clear() {
    positions_.clear();
    registered_ = 0;
  }

 private:
  std::map<int32_t, int32_t> positions_;
  int32_t registered_ = 0;
};

// The module's one table, filled by parameter set-up (the host runs it before
// any UI or render command) and only read afterwards.
ParamPositionTable& ModuleParamPositionTable();

// Operations on the module's table.
void RegisterParamPosition(ParamId id);
int32_t ParamPosition(ParamId id);

// Raises std::logic_error when the table does not hold exactly
// `declaredCount` - 1 entries (the input layer has none).
void VerifyParamCount(int32_t declaredCount);

}  // namespace morvane
