#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// A line `name = value` of an .editorconfig file.
struct EditorConfigProperty {
    std::string section;  ///< without its brackets; empty before the first section
    std::string name;     ///< in lower case
    std::string value;    ///< without spaces around it and without a comment
    std::uint32_t line;   ///< from 1
    std::uint32_t column; ///< of the value: 16-bit characters, from 1
};

/// An .editorconfig file line by line. Lines that mean nothing are left out.
struct EditorConfigText {
    bool isRoot = false; ///< those in folders above don't apply
    std::vector<std::string> sections;
    std::vector<EditorConfigProperty> properties;
};

EditorConfigText readEditorConfigText(std::string_view text);

} // namespace ombrel
