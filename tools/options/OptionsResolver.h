#pragma once

#include "files/FileSystem.h"
#include "options/EditorConfig.h"
#include "options/EditorConfigLookup.h"
#include "options/EffectCheck.h"
#include "options/FileOptions.h"
#include "options/OptionValue.h"
#include "options/OptionsFileSet.h"
#include "options/OptionsRequest.h"
#include "options/SectionName.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ombrel {

/// What options files are called.
inline constexpr std::string_view optionsFileName = ".ombrel-format.json";

/// An option, and who says so.
struct OptionInForce {
    const Option* option;
    ca::utils::JsonValue value;
    std::string origin; ///< UTF-8, such as ".ombrel-format.json:3"
};

/// Finds out which options apply to a file. Each layer wins over those before it:
///
/// 1. the defaults, or the fallbacks if neither of the next two says anything about the file,
/// 2. .editorconfig,
/// 3. the options file, over what it extends: its own options, then each of its overrides that is for the
///    file,
/// 4. the command line.
///
/// The options file is the nearest .ombrel-format.json of the file's folder and those above. Those further up
/// are ignored unless it says "root": false: then it overrides the next one.
class OptionsResolver {
public:
    /// The request has to outlive the resolver, and so have the files.
    OptionsResolver(const OptionsRequest& request, FileSystem& files);

    /// Reads every options file that these source files need, and returns what is wrong with all that have
    /// been read so far. Paths are as the user wrote them.
    std::vector<OptionsFault> prepare(const std::vector<std::string>& paths);

    /// The options for a file of a folder that has been prepared. May be called on several threads at once.
    FileOptions resolve(const std::string& path) const;

    /// Options files of other users that apply though they aren't part of a source file's repository, as
    /// sentences: in a folder that everybody can write to, such a file decides how others' files look.
    const std::vector<std::string>& getWarnings() const { return warnings; }

    /// Warnings: options that somebody set and that do nothing for any of the files prepared so far, and
    /// values of .editorconfig files that are ignored for one of them. Those of the command line come first,
    /// with an empty path, then one for each file.
    std::vector<OptionsFault> getRemarks() const;

    /// Those about .editorconfig files only.
    std::vector<OptionsFault> getEditorConfigRemarks() const;

    /// The options for a file, one by one, in the order of the table.
    std::vector<OptionInForce> explain(const std::string& path) const;

    /// The options files that have been read, and those that they extend, by absolute paths.
    std::vector<std::string> getOptionsFiles() const { return options.getPaths(); }

    /// A path as the user knows it best: relative if it is in the current folder or below.
    std::string getShownPath(const std::string& path) const;

private:
    struct Origin {
        const OptionsLayer* layer = nullptr;         ///< null: not from an options file
        bool isOverride = false;                     ///< of the layer
        const CommandLineSetting* command = nullptr; ///< null: not from the command line
        bool isFallback = false;                     ///< of the request
    };
    enum class Sources {
        All,
        Own, ///< options files and the command line, but not what other tools read or say too
    };
    using Visitor = std::function<void(const Setting&, const Origin&)>;
    using Layers = std::vector<const OptionsLayer*>;

    std::string getAbsolute(const std::string& path) const;
    const Layers& findLayers(const std::string& folder, const std::string& sourceFolder);
    /// The .editorconfig files of a folder and those above it.
    struct EditorConfigChain {
        SectionNames names = SectionNames::Extensions;       ///< Excessive: don't read any of them
        bool hasWrongValues = false;                         ///< in any section
        std::optional<std::vector<Setting>> forSources = {}; ///< for every *.omb file of the folder
    };

    std::optional<EditorConfigChain> findEditorConfig(const std::string& folder,
                                                      const std::string& sourceFolder);
    EditorConfigChain checkEditorConfig(const std::string& path);
    void prepareEditorConfig(const std::string& path);
    void checkEditorConfigValues(const std::string& absolutePath);
    void addEditorConfigRemark(const std::string& path, Problem problem);
    void addEditorConfigFault(const std::string& path, std::u16string text, Problem problem);
    void warnIfForeign(const std::string& path, const std::string& sourceFolder);
    std::vector<Setting> getEditorConfigSettings(const std::string& absolutePath) const;
    void visitSettings(const std::string& absolutePath, Sources sources, const Visitor& visit) const;
    void visitFiles(const std::string& absolutePath, Sources sources, const Visitor& visit) const;
    void visitBase(const std::string& absolutePath, bool hasFallbacks, const Visitor& visit) const;
    static void visitLayer(const OptionsLayer& layer, const std::string& absolutePath, const Visitor& visit);
    SettingsInForce collect(const std::string& absolutePath, Sources sources) const;
    std::vector<EffectCheck::Remark> checkEffects() const;
    std::string explainOrigin(const std::string& absolutePath, const SettingInForce& setting) const;
    std::string describeEditorConfig(const std::string& absolutePath, const Option& option) const;

    const OptionsRequest& request;
    FileSystem& files;
    std::string currentFolder; ///< absolute; empty if it doesn't exist any more
    OptionsFileSet options;
    std::unordered_map<std::string, Layers> layersByFolder; ///< overriding ones before what they override
    std::unordered_map<std::string, std::optional<EditorConfigChain>> editorConfigs; ///< by folder
    std::vector<OptionsFault> editorConfigFaults;                                    ///< one for each file
    std::map<std::string, OptionsFault> editorConfigRemarks;                         ///< by path
    std::vector<std::string> warnings;
    std::vector<std::string>
        checkedPaths; ///< whose options have to have an effect; one is empty without files
};

} // namespace ombrel
