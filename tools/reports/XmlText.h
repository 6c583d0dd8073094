#pragma once

#include <string>
#include <string_view>

namespace ombrel {

/// Text as it can be in an attribute or an element of XML: markup, line ends, tabs and whatever else can't be
/// seen are escaped, and what XML can't hold is replaced: bytes that aren't UTF-8, control characters.
std::string escapeXml(std::string_view text);

} // namespace ombrel
