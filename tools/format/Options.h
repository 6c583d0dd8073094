#pragma once

#include <cstdint>
#include <string>

#include <ca/formatting/LegacyFormatter.h>

namespace ombrel {

enum class Engine { Line, Tree };

/// What the line engine does to a line. Sizes are columns.
struct LineOptions {
    std::uint32_t indentSize = 4; ///< one level: 0 to 64
    std::uint32_t tabSize = 4;    ///< from one tab stop to the next: 1 to 64
    bool useTabs = false;         ///< indentation is tabs and then spaces, instead of spaces only
    ca::formatting::legacy::FunctionStyle functionStyle = ca::formatting::legacy::FunctionStyle::All;
    ca::formatting::legacy::BlankLineStyle blankLines = ca::formatting::legacy::BlankLineStyle::Trim;
};

/// All options for one file.
struct FileOptions {
    Engine engine = Engine::Line;
    LineOptions line;
    std::u16string formattingJson; ///< for the tree engine: {"formatting": {…}} with all layers in one
};

} // namespace ombrel
