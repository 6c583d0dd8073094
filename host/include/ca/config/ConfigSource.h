#pragma once

#include "ca/config/AbstractConfigManager.h"
#include "ca/config/ConfigIssue.h"
#include "ca/utils/JsonDocument.h"
#include "fl/filesystem/basic_path.h"
#include "ombrel/api.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

namespace ca::config {

class Config;

/// Where a configuration comes from. Which of the classes below a source is decides what its sections are.
class OMBREL_HOST_API ConfigSource {
public:
    ConfigSource(const ConfigSource&) = delete;
    ConfigSource& operator=(const ConfigSource&) = delete;
    virtual ~ConfigSource();

    /// What is wrong with the source itself. Nothing, unless the class has something to read.
    virtual std::unordered_set<ConfigIssue> getIssues() const;

protected:
    ConfigSource() = default;
};

/// What the products come with. Has no content: sections answer with their built-in values.
class OMBREL_HOST_API FactoryConfigSource : public ConfigSource {
public:
    ~FactoryConfigSource() override;
};

/// Settings of the time before configuration files.
class OMBREL_HOST_API LegacyConfigSource : public ConfigSource {
public:
    ~LegacyConfigSource() override;
};

/// What the user chose in the preferences.
class OMBREL_HOST_API PreferenceConfigSource : public ConfigSource {
public:
    ~PreferenceConfigSource() override;
};

/// One JSON text, and the files that it names in "extends", a path or a list of paths, which are its base.
///
/// The text, its files, their files and so on make one chain of layers with a `FactoryConfigSource` at its
/// end. Of a list, later entries override earlier ones, each with all that it extends itself:
///
///     top.json   {"extends": ["a.json", "b.json"]}          top, b, shared, a, factory
///     a.json     {"extends": "shared.json"}
///     b.json     {"extends": "shared.json"}
///
/// A file that is reached more than once has one place, the highest; a second one below that could never be
/// asked for anything. A file that can't be had, that is one of those extending it, or that would make the
/// chain longer than `maximalLayerCount` is left out, and an issue at its "extends" says so.
///
/// All reading is done by the constructor; afterwards nothing changes, and any thread may use the source.
class OMBREL_HOST_API JsonConfigSource : public ConfigSource {
public:
    /// JSON texts and files in one chain, and entries of one "extends". Sections are made from the top down,
    /// each on the call stack of the layer above it and with all the locks above it held, so a chain can't be
    /// as long as one likes.
    static constexpr std::size_t maximalLayerCount = 32;

    /// `path` is the file that the text is from, if there is one; "extends" is resolved against it through
    /// the manager, which is used by this call only and may be empty: then, as without a path, an "extends"
    /// is an issue.
    ///
    /// Faults of text and files become issues. What else the manager throws passes through.
    JsonConfigSource(std::optional<fl::filesystem::path> path, const std::u16string& text,
                     const std::shared_ptr<AbstractConfigManager>& manager);
    ~JsonConfigSource() override;

    /// The base layer. Never empty. A class that layers in another way overrides this.
    virtual std::shared_ptr<Config> getBaseConfig() const;

    /// The top-level value of the text with this name, if there is one: none in a text with a syntax error.
    std::optional<ca::utils::JsonValue> getSection(const std::u16string& name) const;

    /// The file that the text is from, if there is one.
    std::optional<fl::filesystem::path> getFilePath() const;

    /// What is wrong with the text and with all base layers, so that nothing is lost where only the top
    /// is asked. An issue has the path of the file that it is about; one without a path is about the text.
    std::unordered_set<ConfigIssue> getIssues() const override;

private:
    friend class LayerChain;
    JsonConfigSource(std::optional<fl::filesystem::path> path,
                     std::shared_ptr<const ca::utils::JsonDocument> document, std::shared_ptr<Config> base,
                     std::unordered_set<ConfigIssue> issues);

    std::optional<fl::filesystem::path> path;
    std::shared_ptr<const ca::utils::JsonDocument> document;
    std::shared_ptr<Config> base;
    std::unordered_set<ConfigIssue> issues;
};

} // namespace ca::config
