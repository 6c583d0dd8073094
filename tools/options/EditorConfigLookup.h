#pragma once

#include "files/FileSystem.h"
#include "options/EditorConfigText.h"

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

inline constexpr std::string_view editorConfigName = ".editorconfig";

/// An .editorconfig file, and what of it applies to one file.
struct EditorConfigPart {
    std::string path; ///< absolute
    std::vector<EditorConfigProperty> properties;
};

/// What each .editorconfig file in the folder of a file, by its absolute path, and in those above says about
/// the file, the outermost first. Reads the files again: for messages about some of them, not for each file.
std::vector<EditorConfigPart> findEditorConfigParts(const std::string& absolutePath, FileSystem& files);

/// Its bytes. Empty if the file can't be read, or is a link to one of another name, which may hold anything.
std::string readEditorConfigBytes(const std::string& path, FileSystem& files);

} // namespace ombrel
