#include "options/OptionsFileSet.h"

#include "files/Paths.h"
#include "text/Printable.h"

#include <ca/config/ConfigSource.h>
#include <ca/utils/JsonDocument.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr std::size_t maximalProblemCount = 100; // of one file

OptionsFile readFile(FileSystem& files, const std::string& path) {
    try {
        return readOptionsFile(files.readRegular(path, ca::utils::maximalJsonSize));
    } catch (const FileError& error) {
        OptionsFile unreadable;
        unreadable.problems.push_back({Code::UnreadableOptions, error.kind == FileError::Kind::TooLarge
                                                                    ? "an options file has 16 MiB at most"
                                                                    : error.what()});
        return unreadable;
    }
}

/// Links are followed, since one with a harmless name can lead anywhere.
bool isOptionsFileOf(const std::string& tree, const std::string& path) {
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error);
    return !error && real.ends_with(".json") && isBelow(tree, real);
}

/// The folder whose files belong together with an options file: its repository, otherwise its own.
std::string findTree(FileSystem& files, const std::string& path) {
    std::error_code error;
    const std::string folder = std::filesystem::canonical(getFolder(path), error);
    const std::string repository = files.findRepository(folder);
    return repository.empty() ? folder : repository;
}

/// A message quotes what it is about, and somebody else's options file can name any file of the user's.
void hideText(OptionsFile& file) {
    const auto placed = std::find_if(file.problems.begin(), file.problems.end(),
                                     [](const Problem& problem) { return problem.line != 0; });
    if (placed != file.problems.end()) {
        Problem first = *placed;
        first.text = "not a valid options file; no text is shown of files outside of the tree, and of those "
                     "that aren't called *.json";
        file.problems = {std::move(first)};
    }
    file.text.clear();
}

} // namespace

std::vector<OptionsFault> OptionsFileSet::getFaults() const {
    std::vector<OptionsFault> faults;
    for (const auto& layer : layers) {
        if (!layer->file.problems.empty()) {
            OptionsFault fault{layer->path, layer->file.text, layer->file.problems};
            std::stable_sort(fault.problems.begin(), fault.problems.end(),
                             [](const Problem& a, const Problem& b) {
                                 return std::pair(a.line, a.column) < std::pair(b.line, b.column);
                             });
            if (fault.problems.size() > maximalProblemCount) {
                fault.problems.erase(fault.problems.begin() + maximalProblemCount, fault.problems.end());
            }
            faults.push_back(std::move(fault));
        }
    }
    return faults;
}

std::vector<std::string> OptionsFileSet::getPaths() const {
    std::vector<std::string> paths;
    for (const auto& layer : layers) {
        paths.push_back(layer->path);
    }
    return paths;
}

/// `tree` is where files may show their text; empty: everywhere.
OptionsLayer& OptionsFileSet::addLayer(const std::string& path, const std::string& tree) {
    OptionsLayer& layer = *layers.emplace_back(std::make_unique<OptionsLayer>());
    layersByPath.emplace(path, &layer);
    layer.path = path;
    layer.folder = getFolder(path);
    layer.file = readFile(files, path);
    layer.isHidden = !tree.empty() && !isOptionsFileOf(tree, path);
    if (layer.isHidden) {
        hideText(layer.file);
    }
    layer.isOpen = true;
    return layer;
}

const OptionsLayer& OptionsFileSet::load(const std::string& path, bool isNamed) {
    if (const auto found = layersByPath.find(path); found != layersByPath.end()) {
        return *found->second;
    }
    struct Open {
        OptionsLayer* layer;
        std::size_t next; // of its extensions
    };
    const std::size_t firstLayer = layers.size();
    const std::string tree = findTree(files, path);
    OptionsLayer& top = addLayer(path, isNamed ? std::string() : tree);
    std::vector<Open> open{{&top, 0}};
    while (!open.empty()) {
        auto& [layer, next] = open.back();
        if (next == layer->file.extensions.size()) {
            layer->isOpen = false;
            open.pop_back();
        } else if (OptionsLayer* base = addBase(*layer, layer->file.extensions[next++], tree, firstLayer)) {
            open.push_back({base, 0});
        }
    }
    return top;
}

/// Returns the base if it is new, so that its own bases have to be added.
OptionsLayer* OptionsFileSet::addBase(OptionsLayer& layer, const Extension& extension,
                                      const std::string& tree, std::size_t firstLayer) {
    constexpr std::size_t maximalCount = ca::config::JsonConfigSource::maximalLayerCount;
    const std::string path = (std::filesystem::path(layer.folder) / extension.name).lexically_normal();
    const auto refuse = [&](std::string text) {
        layer.file.problems.push_back(makeProblem(Code::InvalidExtends, extension.place, std::move(text)));
        return nullptr;
    };
    if (const auto known = layersByPath.find(path); known != layersByPath.end()) {
        if (known->second->isOpen) {
            return refuse("this file would extend itself, directly or through others");
        }
        layer.bases.push_back(known->second);
        return nullptr;
    }
    if (!files.isThere(path)) {
        return refuse("there is no such file" + (layer.isHidden ? "" : ": " + getPrintableName(path)));
    }
    if (layers.size() - firstLayer == maximalCount) {
        return refuse(fmt::format("more than {} files in one chain of \"extends\"", maximalCount));
    }
    OptionsLayer& base = addLayer(path, tree);
    layer.bases.push_back(&base);
    return &base;
}

void appendLayers(const OptionsLayer& top, std::vector<const OptionsLayer*>& layers) {
    std::vector<const OptionsLayer*> waiting{&top};
    while (!waiting.empty()) {
        const OptionsLayer* layer = waiting.back();
        waiting.pop_back();
        if (std::find(layers.begin(), layers.end(), layer) == layers.end()) {
            layers.push_back(layer);
            waiting.insert(waiting.end(), layer->bases.begin(), layer->bases.end());
        }
    }
}

} // namespace ombrel
