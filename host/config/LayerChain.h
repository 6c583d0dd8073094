#pragma once

#include "ca/config/ConfigSource.h"
#include "ca/config/LayerSearch.h"
#include "i18n/ConfigMessages.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace ca::config {

/// A text and all that it extends, from the top down.
class LayerChain {
public:
    using Issues = std::unordered_set<ConfigIssue>;
    using Document = std::shared_ptr<const ca::utils::JsonDocument>;

    /// Finds all base layers of a text. The manager may be null.
    LayerChain(const std::optional<fl::filesystem::path>& path, const Document& document,
               AbstractConfigManager* manager);

    /// Makes the configurations of all layers but the top one; the last has a factory source.
    std::shared_ptr<Config> makeBase() const;

    /// What is wrong with any of the layers.
    Issues getIssues() const { return collectIssues(0); }

private:
    friend class LayerSearch<LayerChain>;

    using JsonValue = ca::utils::JsonValue;
    using Layer = std::size_t; ///< an index of `files`
    using Name = std::u16string;

    struct File {
        std::optional<fl::filesystem::path> path;
        Document document;
        std::vector<JsonValue> entries; ///< of "extends"
        Issues issues;
    };

    std::size_t addFile(const std::optional<fl::filesystem::path>& path, const Document& document);
    void readEntries(std::size_t layer);
    std::optional<std::u16string> getTopName() const;

    std::size_t countEntries(std::size_t layer) const { return files[layer].entries.size(); }
    std::optional<std::u16string> resolve(std::size_t layer, std::size_t entry);
    std::optional<std::size_t> load(std::size_t layer, std::size_t entry, const std::u16string& name);
    void refuse(std::size_t layer, std::size_t entry, ChainFault fault);
    void recordIssue(std::size_t layer, const JsonValue& value, fl::i18n::ConfigMessage message,
                     std::vector<resource_core::BaseMsgID::Argument> arguments = {});
    Issues collectIssues(std::size_t first) const;

    AbstractConfigManager* manager;
    std::vector<File> files; ///< from the top down, since a layer is loaded when it gets its place
};

} // namespace ca::config
