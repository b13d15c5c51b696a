#include "frei0r/editors/KdenliveDescription.h"

#include "frei0r/editors/EditorControls.h"
#include "frei0r/editors/XmlText.h"

namespace morvane::frei0r {
namespace {

std::string Joined(const std::vector<std::string>& items, char separator) {
  std::string text;
  for (const std::string& item : items)
    text += (text.empty() ? "" : std::string(1, separator)) + item;
  return text;
}

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + XmlText(value) + "\"";
}

// One <parameter>: a list sends the module's item text, a slider user units through factor and
// offset (its default is the module's value, as Kdenlive stores it), and the checkbox 0 or 1.
std::string Parameter(const EditorControl& control) {
  std::string head = "  <parameter";
  std::string body;
  switch (control.widget) {
    case Widget::List:
      head += Attribute("type", "list") + Attribute("name", control.Name()) +
              Attribute("default", control.frei->items[std::size_t(control.defaultItem)]) +
              Attribute("paramlist", Joined(control.frei->items, ';'));
      body = "    <paramlistdisplay>" + XmlText(Joined(control.displayItems, ',')) +
             "</paramlistdisplay>\n";
      break;
    case Widget::Slider: {
      const int digits = control.decimals + 6;  // the map exactly, whatever the range
      head += Attribute("type", control.keyframable ? "animated" : "constant") +
              Attribute("name", control.Name()) +
              Attribute("default", DecimalText(control.ModuleValue(control.dephault), 12)) +
              Attribute("min", DecimalText(control.min, control.decimals)) +
              Attribute("max", DecimalText(control.max, control.decimals)) +
              Attribute("factor", DecimalText(control.factor, digits)) +
              Attribute("offset", DecimalText(control.offset, digits)) +
              Attribute("decimals", std::to_string(control.decimals));
      if (*control.suffix != '\0') head += Attribute("suffix", control.suffix);
      break;
    }
    case Widget::Checkbox:
      head += Attribute("type", "bool") + Attribute("name", control.Name()) +
              Attribute("default", DecimalText(control.dephault, 0));
      break;
  }
  return head + ">\n" + body + "    <name>" + XmlText(control.Name()) + "</name>\n" +
         "    <comment>" + XmlText(control.frei->control->summary) + "</comment>\n" +
         "  </parameter>\n";
}

}  // namespace

std::string KdenliveDescription(const ModuleDescription& module, const char* service,
                                const char* element) {
  const std::string kind = element;
  std::string xml = "<?xml version=\"1.0\"?>\n<!DOCTYPE kpartgui>\n<" + kind + " LC_NUMERIC=\"C\"" +
                    Attribute("tag", service) + Attribute("id", service) +
                    (kind == "effect" ? Attribute("type", "video") : "") + ">\n  <name>" +
                    XmlText(module.name) + "</name>\n  <description>" +
                    XmlText(module.explanation) + "</description>\n  <author>Orbrenn</author>\n";
  for (const EditorControl& control : EditorControls())
    xml += Parameter(control);
  return xml + "</" + kind + ">\n";
}

}  // namespace morvane::frei0r
