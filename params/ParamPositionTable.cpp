#include "params/ParamPositionTable.h"

#include <stdexcept>

namespace morvane {

void ParamPositionTable::Register(ParamId id) {
  ++registered_;
  positions_[ToInt(id)] = registered_;
}

int32_t ParamPositionTable::Position(ParamId id) const {
  const auto found = positions_.find(ToInt(id));
  return found == positions_.end() ? 0 : found->second;
}

ParamPositionTable& ModuleParamPositionTable() {
  static ParamPositionTable table;
  return table;
}

void RegisterParamPosition(ParamId id) {
  ModuleParamPositionTable().Register(id);
}

int32_t ParamPosition(ParamId id) {
  return ModuleParamPositionTable().Position(id);
}

void VerifyParamCount(int32_t declaredCount) {
  if (static_cast<int64_t>(ModuleParamPositionTable().Size()) !=
      static_cast<int64_t>(declaredCount) - 1) {
    throw std::logic_error(
        "Reported parameter count does not match actual parameter count. This would lead to "
        "incorrect values.");
  }
}

}  // namespace morvane
