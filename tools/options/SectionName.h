#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// What the section names of an .editorconfig file look at.
enum class SectionNames {
    Extensions, ///< of files: all names are like `*`, `*.omb` or `*.{omb,txt}`
    Paths,
    Excessive, ///< matching a path could take seconds
};

/// Names are without their brackets.
SectionNames classifySectionNames(const std::vector<std::string>& names);

/// Whether a section is about a file, with a path relative to the folder of the .editorconfig. Which sections
/// apply is for the EditorConfig library to say, but it doesn't tell; this is for naming their lines. Takes
/// as long as the library does, so ask it for no names that are Excessive.
bool matchesSection(std::string_view name, std::string_view path);

} // namespace ombrel
