#pragma once

#include "options/EditorConfigText.h"
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

/// What the .editorconfig files on disk say about a file with this absolute path: indent_style, indent_size,
/// tab_width and max_line_length. As is the custom with these files, values that an option can't have count
/// as absent; findValueFault() tells which those are. Reads every .editorconfig of the folder and those above
/// it, without a limit and whatever kind of file it is. May be called on several threads at once.
std::variant<std::vector<Setting>, EditorConfigFault> readEditorConfig(const std::string& path);

/// Why a property can't have a value: what is expected instead, such as "expected tab, space or unset". Empty
/// if it can have it, and for all properties that no option comes from.
std::string findValueFault(const std::string& property, const std::string& value);

/// The properties, lines of one or more files, that a value of the option comes from: one or, where a level
/// is a number of tabs, both sizes. `lines` are all that apply to a file, later ones override earlier ones.
std::vector<const EditorConfigProperty*> findSources(const Option& option,
                                                     const std::vector<EditorConfigProperty>& lines);

} // namespace ombrel
