#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace ombrel {

/// A value as indented lines. Whatever can't be seen is escaped, and bytes that aren't UTF-8 are replaced.
std::string makeJsonText(const nlohmann::ordered_json& value);

} // namespace ombrel
