#include "options/OptionsResolver.h"

#include "files/Paths.h"
#include "options/EditorConfig.h"
#include "text/Printable.h"
#include "text/TextEncoding.h"

#include <ca/utils/JsonDocument.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_set>

#include <fmt/format.h>

namespace ombrel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view editorConfigName = ".editorconfig";

std::string join(const std::string& folder, std::string_view name) {
    return fmt::format("{}{}{}", folder, folder.ends_with('/') ? "" : "/", name);
}

bool isTop(const std::string& folder) {
    return folder == getFolder(folder);
}

std::string getCurrentFolder() {
    std::error_code error;
    return fs::current_path(error).string();
}

/// Empty if the file can't be read.
std::string readText(FileSystem& files, const std::string& path) {
    try {
        return files.read(path, ca::utils::maximalJsonSize);
    } catch (const FileError&) {
        return {};
    }
}

} // namespace

OptionsResolver::OptionsResolver(const OptionsRequest& request, FileSystem& files)
    : request(request), files(files), currentFolder(getCurrentFolder()), options(files) {}

std::vector<OptionsFault> OptionsResolver::prepare(const std::vector<std::string>& paths) {
    if (request.ignoresFiles) {
        return {};
    }
    std::unordered_set<std::string> folders;
    for (const std::string& path : paths) {
        const std::string absolute = getAbsolute(path);
        const std::string folder = getFolder(absolute);
        if (folders.insert(folder).second) {
            findLayers(folder);
            if (findEditorConfig(folder)) {
                checkEditorConfig(absolute);
            }
        }
    }
    std::vector<OptionsFault> faults = options.getFaults();
    faults.insert(faults.end(), editorConfigFaults.begin(), editorConfigFaults.end());
    return faults;
}

FileOptions OptionsResolver::resolve(const std::string& path) const {
    OptionValues values;
    visitSettings(getAbsolute(path),
                  [&](const Setting& setting, const Origin&) { values.set(*setting.option, setting.value); });
    return makeFileOptions(values);
}

std::vector<OptionInForce> OptionsResolver::explain(const std::string& path) const {
    const std::string absolute = getAbsolute(path);
    std::vector<OptionInForce> result;
    for (const Option& option : getOptions()) {
        result.push_back({&option, parseValue(option, option.factory).value(), "default"});
    }
    visitSettings(absolute, [&](const Setting& setting, const Origin& origin) {
        OptionInForce& entry = result[static_cast<std::size_t>(setting.option - getOptions().data())];
        entry.value = setting.value;
        entry.origin = describe(absolute, setting, origin);
    });
    return result;
}

std::string OptionsResolver::getShownPath(const std::string& path) const {
    return getShortPath(currentFolder, path);
}

/// Links are followed only where the name can't be understood without: behind `..`.
std::string OptionsResolver::getAbsolute(const std::string& path) const {
    const fs::path absolute = fs::path(currentFolder) / path;
    if (std::find(absolute.begin(), absolute.end(), "..") == absolute.end()) {
        return absolute.lexically_normal();
    }
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(absolute.parent_path(), error);
    return error ? absolute.lexically_normal() : folder / absolute.filename();
}

const OptionsResolver::Layers& OptionsResolver::findLayers(const std::string& folder) {
    if (const auto found = layersByFolder.find(folder); found != layersByFolder.end()) {
        return found->second;
    }
    Layers layers;
    bool goesOn = !isTop(folder);
    const std::string path = request.file.empty() ? join(folder, optionsFileName) : getAbsolute(request.file);
    if (!request.file.empty() || files.isFile(path)) {
        const OptionsLayer& layer = options.load(path);
        appendLayers(layer, layers);
        goesOn = goesOn && !layer.file.isRoot && request.file.empty();
    }
    if (goesOn) {
        for (const OptionsLayer* layer : findLayers(getFolder(folder))) {
            if (std::find(layers.begin(), layers.end(), layer) == layers.end()) {
                layers.push_back(layer);
            }
        }
    }
    return layersByFolder.emplace(folder, std::move(layers)).first->second;
}

bool OptionsResolver::findEditorConfig(const std::string& folder) {
    if (const auto found = hasEditorConfig.find(folder); found != hasEditorConfig.end()) {
        return found->second;
    }
    const bool isThere = files.isFile(join(folder, editorConfigName)) ||
                         (!isTop(folder) && findEditorConfig(getFolder(folder)));
    hasEditorConfig.emplace(folder, isThere);
    return isThere;
}

void OptionsResolver::checkEditorConfig(const std::string& path) {
    const auto read = readEditorConfig(path);
    const auto* fault = std::get_if<EditorConfigFault>(&read);
    const auto isSame = [&](const OptionsFault& known) { return known.path == fault->path; };
    if (fault != nullptr && std::none_of(editorConfigFaults.begin(), editorConfigFaults.end(), isSame)) {
        editorConfigFaults.push_back(
            {fault->path,
             decodeLossy(readText(files, fault->path)),
             {{Code::InvalidEditorConfig,
               "expected a section, such as [*.omb], or a property, such as indent_size = 4", fault->line,
               1}}});
    }
}

void OptionsResolver::visitLayer(const OptionsLayer& layer, const std::string& absolutePath,
                                 const Visitor& visit) {
    const std::string path = layer.file.overrides.empty() ? "" : getPathFrom(layer.folder, absolutePath);
    for (const Setting& setting : layer.file.settings) {
        visit(setting, {&layer});
    }
    for (const Override& entry : layer.file.overrides) {
        if (entry.isFor(path)) {
            for (const Setting& setting : entry.settings) {
                visit(setting, {&layer, true});
            }
        }
    }
}

void OptionsResolver::visitSettings(const std::string& absolutePath, const Visitor& visit) const {
    const std::string folder = getFolder(absolutePath);
    if (!request.ignoresFiles && hasEditorConfig.at(folder)) {
        const auto read = readEditorConfig(absolutePath);
        if (const auto* settings = std::get_if<std::vector<Setting>>(&read)) {
            std::for_each(settings->begin(), settings->end(),
                          [&](const Setting& setting) { visit(setting, {}); });
        }
    }
    if (!request.ignoresFiles) {
        const Layers& layers = layersByFolder.at(folder);
        std::for_each(layers.rbegin(), layers.rend(),
                      [&](const OptionsLayer* layer) { visitLayer(*layer, absolutePath, visit); });
    }
    for (const CommandLineSetting& command : request.settings) {
        visit(command.setting, {nullptr, false, &command});
    }
}

std::string OptionsResolver::describe(const std::string& absolutePath, const Setting& setting,
                                      const Origin& origin) const {
    if (origin.command != nullptr) {
        return origin.command->flag;
    }
    if (origin.layer == nullptr) {
        return describeEditorConfig(absolutePath, *setting.option);
    }
    return fmt::format("{}:{}{}", getPrintableName(getShownPath(origin.layer->path)), setting.line,
                       origin.isOverride ? ", an override" : "");
}

/// Which line of which file was decisive isn't known, but often there is only one that can be meant.
std::string OptionsResolver::describeEditorConfig(const std::string& absolutePath,
                                                  const Option& option) const {
    std::vector<std::string> places;
    std::string folder = getFolder(absolutePath);
    for (bool isDone = false; !isDone; folder = getFolder(folder)) {
        isDone = isTop(folder);
        const std::string path = join(folder, editorConfigName);
        if (files.isFile(path)) {
            for (const std::uint32_t line : findEditorConfigLines(option, readText(files, path))) {
                places.push_back(fmt::format("{}:{}", getPrintableName(getShownPath(path)), line));
            }
        }
    }
    return places.size() == 1 ? places.front() : std::string(editorConfigName);
}

} // namespace ombrel
