#pragma once

#include "options/OptionValue.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ombrel {

/// A line of an .editorconfig file that can't be understood.
struct EditorConfigFault {
    std::string path;
    std::uint32_t line;
};

/// Bytes of an .editorconfig file.
inline constexpr std::uint64_t maximalEditorConfigSize = 64 << 10;

/// What the section names of an .editorconfig file look at.
enum class SectionNames {
    Extensions, ///< of files: all names are like `[*]`, `[*.omb]` or `[*.{omb,txt}]`
    Paths,
    Excessive, ///< matching a path could take seconds
};

SectionNames classifySectionNames(std::string_view text);

/// What the .editorconfig files on disk say about a file with this absolute path: indent_style, indent_size,
/// tab_width and max_line_length. As is the custom with these files, values that an option can't have count
/// as absent. Reads every .editorconfig of the folder and those above it, without a limit and whatever kind
/// of file it is. May be called on several threads at once.
std::variant<std::vector<Setting>, EditorConfigFault> readEditorConfig(const std::string& path);

/// The numbers, from 1, of the lines that give a value to one of the properties that the option comes from.
std::vector<std::uint32_t> findEditorConfigLines(const Option& option, std::string_view text);

} // namespace ombrel
