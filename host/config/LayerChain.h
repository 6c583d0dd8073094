#pragma once

#include "ca/config/ConfigSource.h"
#include "i18n/ConfigMessages.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ca::config {

/// Puts a text and all that it extends into one order, from the top down: a layer comes before what it
/// extends, and of a list the last entry with all that it extends comes before the one before it.
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
    struct Layer {
        std::optional<fl::filesystem::path> path;
        Document document;
        Issues issues;
    };

    /// Where a file is in the search: a file that is still open is one of those that extend what is found
    /// now.
    enum class State { Open, Done };

    using JsonValue = ca::utils::JsonValue;

    void addLayer(const std::optional<fl::filesystem::path>& path, const Document& document);
    void extend(std::size_t layer);
    void extendByName(std::size_t layer, const JsonValue& name);
    std::optional<fl::filesystem::path> resolve(std::size_t layer, const JsonValue& name);
    Document getDocument(std::size_t layer, const JsonValue& name, const fl::filesystem::path& file);
    std::u16string getIdentity(const fl::filesystem::path& path) const;
    void recordIssue(std::size_t layer, const JsonValue& value, fl::i18n::ConfigMessage message,
                     std::vector<resource_core::BaseMsgID::Argument> arguments = {});
    Issues collectIssues(std::size_t first) const;

    AbstractConfigManager* manager;
    std::vector<Layer> layers; ///< from the top down
    std::unordered_map<std::u16string, State> states;
};

} // namespace ca::config
