#pragma once

#include "files/FileSystem.h"
#include "options/FileOptions.h"
#include "options/OptionValue.h"
#include "options/OptionsFileSet.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ombrel {

/// What options files are called.
inline constexpr std::string_view optionsFileName = ".ombrel-format.json";

/// One option as the command line has it.
struct CommandLineSetting {
    Setting setting;
    std::string flag; ///< that gave it: "--indent-size", "--set"
};

/// Where options come from, by the command line.
struct OptionsRequest {
    std::string file;                         ///< of --config; empty: the nearest to each source file
    bool ignoresFiles = false;                ///< --no-config: neither options files nor .editorconfig
    std::vector<CommandLineSetting> settings; ///< later ones win
};

/// An option, and who says so.
struct OptionInForce {
    const Option* option;
    ca::utils::JsonValue value;
    std::string origin; ///< UTF-8, such as ".ombrel-format.json:3"
};

/// Finds out which options hold for a file. Each layer wins over those before it:
///
/// 1. the defaults,
/// 2. .editorconfig,
/// 3. the options file, over what it extends: its own options, then each of its overrides that is for the
///    file,
/// 4. the command line.
///
/// The options file is the nearest .ombrel-format.json of the file's folder and those above. It stands alone,
/// unless it says "root": false: then the next one further up lies underneath.
class OptionsResolver {
public:
    /// The request has to outlive the resolver, and so have the files.
    OptionsResolver(const OptionsRequest& request, FileSystem& files);

    /// Reads every options file that these source files need, and gives what is wrong with all that have been
    /// read so far. Paths are as the user wrote them.
    std::vector<OptionsFault> prepare(const std::vector<std::string>& paths);

    /// The options for a file of a folder that has been prepared. May be called on several threads at once.
    FileOptions resolve(const std::string& path) const;

    /// The same, one by one, in the order of the table.
    std::vector<OptionInForce> explain(const std::string& path) const;

    /// A path as the user knows it best: relative if it is in the current folder or below.
    std::string getShownPath(const std::string& path) const;

private:
    struct Origin {
        const OptionsLayer* layer = nullptr;         ///< null: not from an options file
        bool isOverride = false;                     ///< of the layer
        const CommandLineSetting* command = nullptr; ///< null: not from the command line
    };
    using Visitor = std::function<void(const Setting&, const Origin&)>;
    using Layers = std::vector<const OptionsLayer*>;

    std::string getAbsolute(const std::string& path) const;
    const Layers& findLayers(const std::string& folder);
    bool findEditorConfig(const std::string& folder);
    void checkEditorConfig(const std::string& path);
    void visitSettings(const std::string& absolutePath, const Visitor& visit) const;
    static void visitLayer(const OptionsLayer& layer, const std::string& absolutePath, const Visitor& visit);
    std::string describe(const std::string& absolutePath, const Setting& setting, const Origin& origin) const;
    std::string describeEditorConfig(const std::string& absolutePath, const Option& option) const;

    const OptionsRequest& request;
    FileSystem& files;
    std::string currentFolder; ///< absolute; empty if it doesn't exist any more
    OptionsFileSet options;
    std::unordered_map<std::string, Layers> layersByFolder; ///< the uppermost first
    std::unordered_map<std::string, bool> hasEditorConfig;  ///< by folder: there, or further up
    std::vector<OptionsFault> editorConfigFaults;           ///< one for each file
};

} // namespace ombrel
