#include "options/OptionsFileSet.h"

#include "files/Paths.h"
#include "text/Printable.h"

#include <ca/config/ConfigSource.h>
#include <ca/config/LayerSearch.h>
#include <ca/utils/JsonDocument.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

using ca::config::ChainFault;
using ca::config::LayerSearch;

constexpr std::size_t maximalProblemCount = 100; // of one file
constexpr std::size_t maximalLayerCount = ca::config::JsonConfigSource::maximalLayerCount;

/// Bytes. The values of a text take many times its size.
constexpr std::uint64_t maximalOptionsFileSize = 1 << 20;

OptionsFile readFile(FileSystem& files, const std::string& path) {
    try {
        return readOptionsFile(files.readRegular(path, maximalOptionsFileSize));
    } catch (const FileError& error) {
        OptionsFile unreadable;
        unreadable.problems.push_back({Code::UnreadableOptions, error.kind == FileError::Kind::TooLarge
                                                                    ? "an options file has 1 MiB at most"
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
    if (placed != file.problems.end() && placed->code != Code::RequiredVersion) { // that quotes a range only
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
    layer.isRefused.resize(layer.file.extensions.size());
    return layer;
}

OptionsLayer* OptionsFileSet::find(const std::string& path) const {
    const auto found = layersByPath.find(path);
    return found == layersByPath.end() ? nullptr : found->second;
}

/// The files of one chain. One that is part of several is read once, and an entry of it is refused once.
class OptionsFileSet::Chain {
public:
    using Layer = OptionsLayer*;
    using Name = std::string; ///< an absolute path

    Chain(OptionsFileSet& set, std::string tree) : set(set), tree(std::move(tree)) {}

    std::size_t countEntries(const OptionsLayer* layer) const { return layer->file.extensions.size(); }

    std::optional<std::string> resolve(const OptionsLayer* layer, std::size_t entry) const {
        const std::string& name = layer->file.extensions[entry].name;
        return (std::filesystem::path(layer->folder) / name).lexically_normal().string();
    }

    std::optional<OptionsLayer*> load(OptionsLayer* layer, std::size_t entry, const std::string& path) {
        if (OptionsLayer* known = set.find(path)) {
            return known;
        }
        if (!set.files.isThere(path)) {
            const std::string name = layer->isHidden ? "" : ": " + getPrintableName(path);
            refuse(layer, entry, "there is no such file" + name);
            return std::nullopt;
        }
        return &set.addLayer(path, tree);
    }

    void refuse(OptionsLayer* layer, std::size_t entry, ChainFault fault) {
        refuse(layer, entry,
               fault == ChainFault::Circle
                   ? "this file would extend itself, directly or through others"
                   : fmt::format("more than {} files in one chain of \"extends\"", maximalLayerCount));
    }

private:
    static void refuse(OptionsLayer* layer, std::size_t entry, std::string text) {
        if (!layer->isRefused[entry]) {
            layer->isRefused[entry] = true;
            layer->file.problems.push_back(
                makeProblem(Code::InvalidExtends, layer->file.extensions[entry].place, std::move(text)));
        }
    }

    OptionsFileSet& set;
    std::string tree; ///< as for addLayer()
};

const OptionsLayer& OptionsFileSet::load(const std::string& path, bool isNamed) {
    OptionsLayer* top = find(path);
    if (top != nullptr && !top->chain.empty()) {
        return *top;
    }
    const std::string tree = findTree(files, path);
    if (top == nullptr) {
        top = &addLayer(path, isNamed ? std::string() : tree);
    }
    Chain chain(*this, tree);
    const std::vector<OptionsLayer*> found = LayerSearch(chain, maximalLayerCount).find(top, path);
    top->chain.assign(found.begin(), found.end());
    return *top;
}

void appendLayers(const OptionsLayer& top, std::vector<const OptionsLayer*>& layers) {
    for (const OptionsLayer* layer : top.chain) {
        if (std::find(layers.begin(), layers.end(), layer) == layers.end()) {
            layers.push_back(layer);
        }
    }
}

} // namespace ombrel
