// The effect's controls as options of a subcommand: one option per control the module declares,
// named after it in kebab-case, described and checked as ControlOptions says. `render` and
// `curve-graph` take the same set, so they speak one vocabulary.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/ControlOptions.h"
#include "cli/ModuleInfo.h"

namespace CLI {
class App;
}

namespace morvane::cli {

class ControlOptionSet {
 public:
  // Adds the options of `controls` to `command` (the layer controls too when `withLayers`), in the
  // help's "Controls" group.
  void AddTo(CLI::App& command, const std::vector<ControlDescription>& controls, bool withLayers);
  // After parsing: the value controls given, in the module's order. Throws UsageError naming the
  // option for a value the control refuses.
  std::vector<ControlSetting> Settings() const;
  // After parsing: the text given for the first layer control, if any.
  std::optional<std::string> LayerText() const;

 private:
  const std::string* Given(const ControlDescription& control) const;

  CLI::App* command_ = nullptr;
  std::vector<ControlDescription> controls_;
  std::map<std::string, std::string> text_;  // option name -> text as given
};

}  // namespace morvane::cli
