#pragma once

#include "files/FileSystem.h"
#include "options/OptionsFile.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ombrel {

/// An options file and those that it extends.
struct OptionsLayer {
    std::string path;   ///< absolute
    std::string folder; ///< of the path, without a slash at its end unless it is the root
    OptionsFile file;
    std::vector<const OptionsLayer*> bases; ///< what it extends, the lowest first
    bool isOpen = false;                    ///< its bases are being read
};

/// What is wrong with one file of options.
struct OptionsFault {
    std::string path; ///< absolute
    std::u16string text;
    Problems problems; ///< in the order of the text, 1 to 100
};

/// Reads options files, each once, with all that they extend.
class OptionsFileSet {
public:
    explicit OptionsFileSet(FileSystem& files) : files(files) {}

    /// The file with this absolute, normal path. Lives as long as the set. Never fails: what is wrong with
    /// it is told by getFaults().
    const OptionsLayer& load(const std::string& path) { return loadLayer(path); }

    /// One for each file that has problems, in the order in which they were loaded.
    std::vector<OptionsFault> getFaults() const;

private:
    OptionsLayer& loadLayer(const std::string& path);
    void loadBases(OptionsLayer& layer);

    FileSystem& files;
    std::vector<std::unique_ptr<OptionsLayer>> layers;
    std::unordered_map<std::string, OptionsLayer*> layersByPath;
};

/// The file and what it extends, the uppermost first, each once: where it lies uppermost.
void appendLayers(const OptionsLayer& top, std::vector<const OptionsLayer*>& layers);

} // namespace ombrel
