#include "options/EditorConfigLookup.h"

#include "files/Paths.h"
#include "options/EditorConfig.h"
#include "options/SectionName.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace ombrel {

namespace {

namespace fs = std::filesystem;

EditorConfigPart makePart(const std::string& path, const EditorConfigText& text, const std::string& source) {
    const std::string name = getPathFrom(getFolder(path), source);
    EditorConfigPart part{path, {}};
    std::copy_if(text.properties.begin(), text.properties.end(), std::back_inserter(part.properties),
                 [&](const EditorConfigProperty& property) {
                     return !property.section.empty() && matchesSection(property.section, name);
                 });
    return part;
}

} // namespace

std::vector<EditorConfigPart> findEditorConfigParts(const std::string& absolutePath, FileSystem& files) {
    std::vector<EditorConfigPart> parts;
    std::string folder;
    do {
        folder = getFolder(folder.empty() ? absolutePath : folder);
        const std::string path = fs::path(folder) / editorConfigName;
        if (files.isThere(path)) {
            const EditorConfigText text = readEditorConfigText(readEditorConfigBytes(path, files));
            parts.push_back(makePart(path, text, absolutePath));
            if (text.isRoot) {
                break;
            }
        }
    } while (folder != getFolder(folder));
    std::reverse(parts.begin(), parts.end());
    return parts;
}

std::string readEditorConfigBytes(const std::string& path, FileSystem& files) {
    std::error_code error;
    if (fs::canonical(path, error).filename() != editorConfigName) {
        return {};
    }
    try {
        return files.readRegular(path, maximalEditorConfigSize);
    } catch (const FileError&) {
        return {};
    }
}

} // namespace ombrel
