#pragma once

#include "files/FileSystem.h"
#include "options/OptionsFile.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ombrel {

/// An options file and the files that it extends.
struct OptionsLayer {
    std::string path;   ///< absolute
    std::string folder; ///< of the path, without a slash at its end unless it is the root
    OptionsFile file;
    std::vector<const OptionsLayer*> chain; ///< it and what it extends, each before all that it overrides
    std::vector<bool> isRefused;            ///< for each entry of "extends": a problem says so already
    bool isHidden = false;                  ///< no problem may show its text
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

    /// The file with this absolute, normal path. Lives as long as the set. Never fails: getFaults() has what
    /// is wrong with it. Of files that neither were named by the user nor are part of the tree that the
    /// options are for, a fault shows no text.
    const OptionsLayer& load(const std::string& path, bool isNamed);

    /// One for each file that has problems, in the order in which they were loaded.
    std::vector<OptionsFault> getFaults() const;

    /// All files, in the order in which they were loaded.
    std::vector<std::string> getPaths() const;

private:
    class Chain;

    OptionsLayer* find(const std::string& path) const;
    OptionsLayer& addLayer(const std::string& path, const std::string& tree);

    FileSystem& files;
    std::vector<std::unique_ptr<OptionsLayer>> layers;
    std::unordered_map<std::string, OptionsLayer*> layersByPath;
};

/// Appends the file and what it extends, without those that are there already.
void appendLayers(const OptionsLayer& top, std::vector<const OptionsLayer*>& layers);

} // namespace ombrel
