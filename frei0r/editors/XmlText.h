// Text made safe for XML attributes and elements, and for QML string literals.
#pragma once

#include <string>
#include <string_view>

namespace morvane::frei0r {

// &, <, > and " as entities.
std::string XmlText(std::string_view text);

// `text` in double quotes, with backslash and double quote escaped.
std::string QmlString(std::string_view text);

}  // namespace morvane::frei0r
