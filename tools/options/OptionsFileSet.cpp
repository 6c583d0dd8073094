#include "options/OptionsFileSet.h"

#include "files/Paths.h"
#include "text/Printable.h"

#include <ca/utils/JsonDocument.h>

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr std::size_t maximalProblemCount = 100; // of one file

OptionsFile readFile(FileSystem& files, const std::string& path) {
    try {
        return readOptionsFile(files.read(path, ca::utils::maximalJsonSize));
    } catch (const FileError& error) {
        OptionsFile unreadable;
        unreadable.problems.push_back({Code::UnreadableOptions, error.kind == FileError::Kind::TooLarge
                                                                    ? "an options file has 16 MiB at most"
                                                                    : error.what()});
        return unreadable;
    }
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

OptionsLayer& OptionsFileSet::loadLayer(const std::string& path) {
    if (const auto found = layersByPath.find(path); found != layersByPath.end()) {
        return *found->second;
    }
    OptionsLayer& layer = *layers.emplace_back(std::make_unique<OptionsLayer>());
    layersByPath.emplace(path, &layer);
    layer.path = path;
    layer.folder = getFolder(path);
    layer.file = readFile(files, path);
    layer.isOpen = true;
    loadBases(layer);
    layer.isOpen = false;
    return layer;
}

void OptionsFileSet::loadBases(OptionsLayer& layer) {
    for (const Extension& extension : layer.file.extensions) {
        const std::string path = (std::filesystem::path(layer.folder) / extension.name).lexically_normal();
        const auto refuse = [&](std::string text) {
            layer.file.problems.push_back(
                makeProblem(Code::InvalidExtends, extension.place, std::move(text)));
        };
        if (!layersByPath.contains(path) && !files.isFile(path)) {
            refuse("there is no such file: " + getPrintableName(path));
            continue;
        }
        const OptionsLayer& base = loadLayer(path);
        if (base.isOpen) {
            refuse("this file would extend itself, directly or through others");
        } else {
            layer.bases.push_back(&base);
        }
    }
}

void appendLayers(const OptionsLayer& top, std::vector<const OptionsLayer*>& layers) {
    if (std::find(layers.begin(), layers.end(), &top) != layers.end()) {
        return;
    }
    layers.push_back(&top);
    std::for_each(top.bases.rbegin(), top.bases.rend(),
                  [&](const OptionsLayer* base) { appendLayers(*base, layers); });
}

} // namespace ombrel
