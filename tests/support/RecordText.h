// Render records for tests, fuzzers and the golden corpus, made from the table of controls: as
// text keyed by control name, and filled by any rule that picks a value per control. A new
// control needs nothing here.
#pragma once

#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

#include "params/ControlNames.h"
#include "params/ControlTable.h"

namespace morvane::test {

// The record's value of a control, as stored (a whole field converted to double).
inline double FieldValue(const Control& control, const StretchRenderRecord& r) {
  return control.field.whole != nullptr ? r.*control.field.whole : r.*control.field.real;
}

// "name=value" for every control whose value differs from the default record's, in declaration
// order, separated by spaces: the name in kebab-case (as `morvane` spells its options), the value
// the record's own, written to read back exactly.
inline std::string RecordText(const StretchRenderRecord& r) {
  static const StretchRenderRecord defaults = DefaultRecord();
  std::string text;
  for (const Control* control : ValueControls()) {
    const double value = FieldValue(*control, r);
    const double dephault = FieldValue(*control, defaults);
    if (value == dephault && std::signbit(value) == std::signbit(dephault)) continue;
    char word[96];
    if (control->field.whole != nullptr)
      std::snprintf(word, sizeof word, "%s=%d", KebabCase(control->name).c_str(),
                    r.*control->field.whole);
    else
      std::snprintf(word, sizeof word, "%s=%.17g", KebabCase(control->name).c_str(), value);
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

// Sets one control's field from a "name=value" word; throws std::invalid_argument for a name that
// is no control's or a value that is not a number of the field's kind.
inline void ApplyRecordWord(StretchRenderRecord& r, std::string_view word) {
  const std::size_t equals = word.find('=');
  const std::string value(word.substr(equals == std::string_view::npos ? word.size() : equals + 1));
  for (const Control* control : ValueControls()) {
    if (equals == std::string_view::npos || KebabCase(control->name) != word.substr(0, equals))
      continue;
    std::size_t used = 0;
    if (control->field.whole != nullptr)
      r.*control->field.whole = std::stoi(value, &used);
    else
      r.*control->field.real = std::stod(value, &used);
    if (used == value.size()) return;
  }
  throw std::invalid_argument("not a control value: " + std::string(word));
}

// The record with each control's value from `pick(control)`, in the control's own units (0-based
// item, slider value, 16.16 degrees, 0 or 1), stored as a host's read-out stores it.
template <typename Pick>
StretchRenderRecord RecordFrom(Pick pick) {
  StretchRenderRecord r = DefaultRecord();
  for (const Control* control : ValueControls())
    StoreValue(*control, pick(*control), r);
  return r;
}

}  // namespace morvane::test
