// The options for a file come from layers, the later override the earlier: what an editor falls back to,
// .editorconfig files, options files from the farthest base to the nearest with their overrides, the command
// line. prepare() reads all of that once for each folder; resolve() only looks up and may run on many
// threads.
#include "options/OptionsResolver.h"

#include "files/Paths.h"
#include "options/IndentationFlags.h"
#include "text/Printable.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <unordered_set>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view sourceExtension = ".omb";

std::string join(const std::string& folder, std::string_view name) {
    return fmt::format("{}{}{}", folder, folder.ends_with('/') ? "" : "/", name);
}

bool isTop(const std::string& folder) {
    return folder == getFolder(folder);
}

bool hasOverrides(const std::vector<const OptionsLayer*>& layers) {
    return std::any_of(layers.begin(), layers.end(),
                       [](const OptionsLayer* layer) { return !layer->file.overrides.empty(); });
}

} // namespace

OptionsResolver::OptionsResolver(const OptionsRequest& request, FileSystem& files)
    : request(request), files(files), currentFolder(getCurrentFolder()), options(files) {}

std::vector<OptionsFault> OptionsResolver::prepare(const std::vector<std::string>& paths) {
    if (request.ignoresFiles) {
        checkedPaths.emplace_back();
        return {};
    }
    std::unordered_set<std::string> folders;
    for (const std::string& path : paths) {
        const std::string absolute = getAbsolute(path);
        const std::string folder = getFolder(absolute);
        const bool isNew = folders.insert(folder).second;
        if (isNew) {
            findLayers(folder, folder);
            prepareEditorConfig(absolute);
        }
        if (isNew || hasOverrides(layersByFolder.at(folder))) {
            checkedPaths.push_back(absolute);
        }
        checkEditorConfigValues(absolute);
    }
    std::vector<OptionsFault> faults = options.getFaults();
    faults.insert(faults.end(), editorConfigFaults.begin(), editorConfigFaults.end());
    return faults;
}

FileOptions OptionsResolver::resolve(const std::string& path) const {
    OptionValues values;
    visitSettings(getAbsolute(path), Sources::All,
                  [&](const Setting& setting, const Origin&) { values.set(*setting.option, setting.value); });
    return makeFileOptions(values);
}

SettingsInForce OptionsResolver::collect(const std::string& absolutePath, Sources sources) const {
    SettingsInForce settings;
    for (const Option& option : getOptions()) {
        settings.push_back({&option, parseValue(option, option.factory).value()});
    }
    visitSettings(absolutePath, sources, [&](const Setting& setting, const Origin& origin) {
        settings[static_cast<std::size_t>(setting.option - getOptions().data())] = {
            setting.option,    setting.value,     false,         setting.line, origin.layer,
            origin.isOverride, origin.isFallback, origin.command};
    });
    return settings;
}

std::vector<EffectCheck::Remark> OptionsResolver::checkEffects() const {
    EffectCheck effects;
    for (const std::string& path : checkedPaths) {
        const auto layers = layersByFolder.find(getFolder(path));
        const bool hasFile = layers != layersByFolder.end() && !layers->second.empty();
        effects.add(collect(path, Sources::Own), hasFile ? layers->second.front() : nullptr);
    }
    return effects.getRemarks();
}

std::vector<OptionsFault> OptionsResolver::getRemarks() const {
    std::map<const OptionsLayer*, Problems> problems;
    for (EffectCheck::Remark& remark : checkEffects()) {
        problems[remark.layer].push_back(std::move(remark.problem));
    }
    std::vector<OptionsFault> remarks;
    for (auto& [layer, found] : problems) {
        remarks.push_back({layer == nullptr ? "" : layer->path,
                           layer == nullptr ? std::u16string() : layer->file.text, std::move(found)});
    }
    std::vector<OptionsFault> others = getEditorConfigRemarks();
    std::move(others.begin(), others.end(), std::back_inserter(remarks));
    std::sort(remarks.begin(), remarks.end(),
              [](const OptionsFault& a, const OptionsFault& b) { return a.path < b.path; });
    return remarks;
}

std::vector<OptionsFault> OptionsResolver::getEditorConfigRemarks() const {
    std::vector<OptionsFault> remarks;
    remarks.reserve(editorConfigRemarks.size());
    for (const auto& [path, remark] : editorConfigRemarks) {
        remarks.push_back(remark);
    }
    return remarks;
}

std::vector<OptionInForce> OptionsResolver::explain(const std::string& path) const {
    const std::string absolute = getAbsolute(path);
    std::vector<OptionInForce> result;
    for (const SettingInForce& setting : collect(absolute, Sources::All)) {
        result.push_back({setting.option, setting.value, explainOrigin(absolute, setting)});
    }
    return result;
}

std::string OptionsResolver::getShownPath(const std::string& path) const {
    const std::string shown = getShortPath(currentFolder, path);
    return shown.empty() ? "." : shown; // a folder where a file was expected
}

/// Links are followed only before a `..`, which has another meaning there.
std::string OptionsResolver::getAbsolute(const std::string& path) const {
    const fs::path absolute = fs::path(currentFolder) / path;
    if (std::find(absolute.begin(), absolute.end(), "..") == absolute.end()) {
        return absolute.lexically_normal();
    }
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(absolute.parent_path(), error);
    return error ? absolute.lexically_normal() : folder / absolute.filename();
}

const OptionsResolver::Layers& OptionsResolver::findLayers(const std::string& folder,
                                                           const std::string& sourceFolder) {
    if (const auto found = layersByFolder.find(folder); found != layersByFolder.end()) {
        return found->second;
    }
    Layers layers;
    bool goesOn = !isTop(folder);
    const std::string path = request.file.empty() ? join(folder, optionsFileName) : getAbsolute(request.file);
    if (!request.file.empty() || files.isThere(path)) {
        const OptionsLayer& layer = options.load(path, !request.file.empty());
        if (request.file.empty()) {
            warnIfForeign(path, sourceFolder);
        }
        appendLayers(layer, layers);
        goesOn = goesOn && !layer.file.isRoot && request.file.empty();
    }
    if (goesOn) {
        for (const OptionsLayer* layer : findLayers(getFolder(folder), sourceFolder)) {
            if (std::find(layers.begin(), layers.end(), layer) == layers.end()) {
                layers.push_back(layer);
            }
        }
    }
    return layersByFolder.emplace(folder, std::move(layers)).first->second;
}

void OptionsResolver::warnIfForeign(const std::string& path, const std::string& sourceFolder) {
    if (!files.isForeign(path)) {
        return;
    }
    std::error_code error;
    const std::string repository = files.findRepository(fs::weakly_canonical(sourceFolder, error));
    if (repository.empty() ||
        !isBelow(repository, (fs::weakly_canonical(getFolder(path), error) / "x").string())) {
        warnings.push_back(
            fmt::format("{} applies, and belongs to another user", getPrintableName(getShownPath(path))));
    }
}

std::optional<OptionsResolver::EditorConfigChain>
OptionsResolver::findEditorConfig(const std::string& folder, const std::string& sourceFolder) {
    if (const auto found = editorConfigs.find(folder); found != editorConfigs.end()) {
        return found->second;
    }
    auto chain = isTop(folder) ? std::nullopt : findEditorConfig(getFolder(folder), sourceFolder);
    const std::string path = join(folder, editorConfigName);
    if (files.isThere(path)) {
        warnIfForeign(path, sourceFolder);
        const EditorConfigChain above = chain.value_or(EditorConfigChain{});
        const EditorConfigChain own = checkEditorConfig(path);
        chain = EditorConfigChain{std::max(above.names, own.names),
                                  above.hasWrongValues || own.hasWrongValues, std::nullopt};
    }
    return editorConfigs.insert_or_assign(folder, std::move(chain)).first->second;
}

/// Reads one of the files before the library does, which waits for pipes and has no limits.
OptionsResolver::EditorConfigChain OptionsResolver::checkEditorConfig(const std::string& path) {
    EditorConfigText text;
    try {
        text = readEditorConfigText(files.readRegular(path, maximalEditorConfigSize));
    } catch (const FileError& error) {
        addEditorConfigFault(path, {}, {Code::InvalidEditorConfig, error.what()});
        return {SectionNames::Excessive};
    }
    const SectionNames names = classifySectionNames(text.sections);
    if (names == SectionNames::Excessive) {
        addEditorConfigFault(path, {},
                             {Code::InvalidEditorConfig,
                              "its section names have too many '*' and '{' to be matched "
                              "in reasonable time"});
    }
    const bool hasWrongValues =
        std::any_of(text.properties.begin(), text.properties.end(), [](const EditorConfigProperty& property) {
            return !findValueFault(property.name, property.value).empty();
        });
    return {names, hasWrongValues};
}

/// Notes the values that are wrong in sections for a file, each once.
void OptionsResolver::checkEditorConfigValues(const std::string& absolutePath) {
    const auto& chain = editorConfigs.at(getFolder(absolutePath));
    if (!chain || !chain->hasWrongValues || chain->names == SectionNames::Excessive) {
        return;
    }
    for (const EditorConfigPart& part : findEditorConfigParts(absolutePath, files)) {
        for (const EditorConfigProperty& property : part.properties) {
            if (const std::string fault = findValueFault(property.name, property.value); !fault.empty()) {
                addEditorConfigRemark(part.path, {Code::InvalidEditorConfigValue,
                                                  fmt::format("this {} is ignored: {}", property.name, fault),
                                                  property.line, property.column});
            }
        }
    }
}

void OptionsResolver::addEditorConfigRemark(const std::string& path, Problem problem) {
    const auto [remark, isNew] = editorConfigRemarks.try_emplace(path);
    if (isNew) {
        remark->second = {path, decodeLossy(readEditorConfigBytes(path, files)), {}};
    }
    Problems& problems = remark->second.problems;
    const auto place = std::find_if(problems.begin(), problems.end(),
                                    [&](const Problem& known) { return known.line >= problem.line; });
    if (place == problems.end() || place->line != problem.line) {
        problems.insert(place, std::move(problem));
    }
}

/// Finds out what the library says about the first file of a folder, since it reads all files again for each.
void OptionsResolver::prepareEditorConfig(const std::string& path) {
    const std::string folder = getFolder(path);
    const auto chain = findEditorConfig(folder, folder);
    if (!chain || chain->names == SectionNames::Excessive) {
        return;
    }
    const auto read = readEditorConfig(join(folder, fmt::format("x{}", sourceExtension)));
    if (const auto* settings = std::get_if<std::vector<Setting>>(&read)) {
        if (chain->names == SectionNames::Extensions) {
            editorConfigs[folder]->forSources = *settings;
        }
        return;
    }
    const auto& fault = std::get<EditorConfigFault>(read);
    addEditorConfigFault(fault.path, decodeLossy(readEditorConfigBytes(fault.path, files)),
                         {Code::InvalidEditorConfig,
                          "expected a section, such as [*.omb], or a property, such as indent_size = 4",
                          fault.line, 1});
}

void OptionsResolver::addEditorConfigFault(const std::string& path, std::u16string text, Problem problem) {
    const auto isSame = [&](const OptionsFault& known) { return known.path == path; };
    if (std::none_of(editorConfigFaults.begin(), editorConfigFaults.end(), isSame)) {
        editorConfigFaults.push_back({path, std::move(text), {std::move(problem)}});
    }
}

std::vector<Setting> OptionsResolver::getEditorConfigSettings(const std::string& absolutePath) const {
    const auto& chain = editorConfigs.at(getFolder(absolutePath));
    if (!chain) {
        return {};
    }
    if (chain->forSources && absolutePath.ends_with(sourceExtension)) {
        return *chain->forSources;
    }
    auto read = readEditorConfig(absolutePath);
    auto* settings = std::get_if<std::vector<Setting>>(&read);
    return settings == nullptr ? std::vector<Setting>() : std::move(*settings);
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

void OptionsResolver::visitSettings(const std::string& absolutePath, Sources sources,
                                    const Visitor& visit) const {
    IndentationFlags flags;
    const Visitor visitNoted = [&](const Setting& setting, const Origin& origin) {
        flags.note(setting);
        visit(setting, origin);
    };
    if (!request.ignoresFiles) {
        visitFiles(absolutePath, sources, visitNoted);
    }
    for (const CommandLineSetting& command : request.settings) {
        visitNoted(command.setting, {nullptr, false, &command});
        for (const Setting& setting : flags.translate(command)) {
            visit(setting, {nullptr, false, &command});
        }
    }
}

void OptionsResolver::visitFiles(const std::string& absolutePath, Sources sources,
                                 const Visitor& visit) const {
    const Layers& layers = layersByFolder.at(getFolder(absolutePath));
    if (sources == Sources::All) {
        visitBase(absolutePath, layers.empty(), visit);
    }
    std::for_each(layers.rbegin(), layers.rend(),
                  [&](const OptionsLayer* layer) { visitLayer(*layer, absolutePath, visit); });
}

/// What is the base of all options files: .editorconfig, or what an editor says.
void OptionsResolver::visitBase(const std::string& absolutePath, bool hasFallbacks,
                                const Visitor& visit) const {
    const std::vector<Setting> editorConfig = getEditorConfigSettings(absolutePath);
    if (editorConfig.empty() && hasFallbacks) {
        for (const Setting& setting : request.fallbacks) {
            visit(setting, {.isFallback = true});
        }
    }
    for (const Setting& setting : editorConfig) {
        visit(setting, {});
    }
}

std::string OptionsResolver::explainOrigin(const std::string& absolutePath,
                                           const SettingInForce& setting) const {
    if (setting.isDefault) {
        return "default";
    }
    if (setting.command != nullptr) {
        return setting.command->flag;
    }
    if (setting.isFallback) {
        return "the editor";
    }
    if (setting.layer == nullptr) {
        return describeEditorConfig(absolutePath, *setting.option);
    }
    return fmt::format("{}:{}{}", getPrintableName(getShownPath(setting.layer->path)), setting.line,
                       setting.isOverride ? ", an override" : "");
}

/// The library doesn't say which lines decide, so the files are read again.
std::string OptionsResolver::describeEditorConfig(const std::string& absolutePath,
                                                  const Option& option) const {
    std::vector<EditorConfigProperty> all;
    std::vector<std::string> paths;
    for (const EditorConfigPart& part : findEditorConfigParts(absolutePath, files)) {
        all.insert(all.end(), part.properties.begin(), part.properties.end());
        paths.resize(all.size(), getPrintableName(getShownPath(part.path)));
    }
    std::vector<std::string> places;
    for (const EditorConfigProperty* source : findSources(option, all)) {
        places.push_back(fmt::format("{}:{}, [{}]", paths[static_cast<std::size_t>(source - all.data())],
                                     source->line, getPrintableName(source->section)));
    }
    return places.empty() ? std::string(editorConfigName) : fmt::format("{}", fmt::join(places, " and "));
}

} // namespace ombrel
