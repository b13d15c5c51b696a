#include "frei0r/editors/ShotcutFilter.h"

#include <stdexcept>

#include "frei0r/editors/EditorControls.h"
#include "frei0r/editors/XmlText.h"

namespace morvane::frei0r {
namespace {

constexpr std::string_view kMarker = "@CONTROLS@";

std::string QmlList(const std::vector<std::string>& items) {
  std::string list = "[";
  for (const std::string& item : items)
    list += (list.size() > 1 ? ", " : "") + QmlString(item);
  return list + "]";
}

const char* KindName(Widget widget) {
  return widget == Widget::List ? "list" : widget == Widget::Slider ? "slider" : "bool";
}

// One control as a QML object; `dephault` is the text the filter is given for a new instance.
std::string QmlControl(const EditorControl& control) {
  const int digits = control.decimals + 6;
  std::string dephault = control.widget == Widget::List
                             ? control.frei->items[std::size_t(control.defaultItem)]
                             : DecimalText(control.ModuleValue(control.dephault), 12);
  return "        {property: " + QmlString(control.Name()) +
         ", kind: " + QmlString(KindName(control.widget)) +
         ", tip: " + QmlString(control.frei->control->summary) +
         ", items: " + QmlList(control.frei->items) +
         ", display: " + QmlList(control.displayItems) +
         ", defaultItem: " + std::to_string(control.defaultItem) +
         ", dephault: " + QmlString(dephault) +
         ", userDefault: " + DecimalText(control.dephault, control.decimals) +
         ", min: " + DecimalText(control.min, control.decimals) +
         ", max: " + DecimalText(control.max, control.decimals) +
         ", factor: " + DecimalText(control.factor, digits) +
         ", offset: " + DecimalText(control.offset, digits) +
         ", decimals: " + std::to_string(control.decimals) +
         ", suffix: " + QmlString(control.suffix) +
         ", keyframable: " + (control.keyframable ? "true" : "false") + "}";
}

}  // namespace

std::string ShotcutMeta(const ModuleDescription& module, const char* service, const char* id) {
  std::string meta =
      "import QtQuick 2.0\nimport org.shotcut.qml 1.0\n\nMetadata {\n"
      "    type: Metadata.Filter\n    objectName: " +
      QmlString(id) + "\n    name: qsTr(" + QmlString(module.name) +
      ")\n    mlt_service: " + QmlString(service) +
      "\n    qml: \"ui.qml\"\n    keyframes {\n        parameters: [";
  std::string separator = "\n";
  for (const EditorControl& control : EditorControls()) {
    if (!control.keyframable) continue;
    meta += separator + "            Parameter {\n                name: qsTr(" +
            QmlString(control.Name()) +
            ")\n                property: " + QmlString(control.Name()) +
            "\n                isCurve: true\n                minimum: " +
            DecimalText(control.ModuleValue(control.min), 12) +
            "\n                maximum: " + DecimalText(control.ModuleValue(control.max), 12) +
            "\n            }";
    separator = ",\n";
  }
  return meta + "\n        ]\n    }\n}\n";
}

std::string ShotcutUi(std::string_view panel) {
  const std::size_t at = panel.find(kMarker);
  if (at == std::string_view::npos) throw std::runtime_error("the panel has no @CONTROLS@");
  std::string list = "[\n";
  for (const EditorControl& control : EditorControls())
    list += (list.size() > 2 ? ",\n" : "") + QmlControl(control);
  list += "\n    ]";
  return std::string(panel.substr(0, at)) + list + std::string(panel.substr(at + kMarker.size()));
}

}  // namespace morvane::frei0r
