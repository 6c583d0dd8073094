#include "config/LayerChain.h"

#include "ca/config/Config.h"
#include "ca/config/getIssueSeverity.h"
#include "config/quote.h"

#include <algorithm>
#include <utility>

namespace ca::config {

using ca::utils::quote;
using fl::filesystem::path;
using fl::i18n::ConfigMessage;

namespace {

using Position = std::optional<ca::utils::JsonPosition>;

std::optional<ConfigPosition> toPosition(const Position& position) {
    return position ? std::optional(ConfigPosition(position->first, position->second)) : std::nullopt;
}

ConfigIssue makeIssue(std::shared_ptr<resource_core::BaseMsgID> message, const std::optional<path>& file,
                      const Position& start, const Position& end) {
    const Severity severity = getIssueSeverity(message);
    return {std::move(message), severity, file, toPosition(start), toPosition(end)};
}

bool isPath(const ca::utils::JsonValue& value) {
    return value.getKind() == ca::utils::JsonValue::StringKind;
}

/// The entries of "extends": one path or those of a list.
std::vector<ca::utils::JsonValue> getEntries(const ca::utils::JsonValue& extends) {
    return extends.getKind() == ca::utils::JsonValue::ArrayKind ? extends.getElements()
                                                                : std::vector{extends};
}

} // namespace

LayerChain::LayerChain(const std::optional<path>& path, const Document& document,
                       AbstractConfigManager* manager)
    : manager(manager) {
    addLayer(path, document);
}

void LayerChain::addLayer(const std::optional<path>& path, const Document& document) {
    Layer layer{path, document, {}};
    for (const ca::utils::JsonFault& fault : document->faults) {
        layer.issues.insert(makeIssue(fault.message, path, fault.start, fault.end));
    }
    layers.push_back(std::move(layer));
    if (!path) {
        return extend(layers.size() - 1);
    }
    const std::u16string identity = getIdentity(*path);
    states[identity] = State::Open;
    extend(layers.size() - 1);
    states[identity] = State::Done;
}

void LayerChain::extend(std::size_t layer) {
    const auto& root = layers[layer].document->root;
    const ca::utils::JsonField* field = root ? root->find(u"extends") : nullptr;
    if (field == nullptr) {
        return;
    }
    std::vector<JsonValue> entries = getEntries(field->value);
    if (entries.size() > JsonConfigSource::maximalLayerCount) {
        return recordIssue(layer, field->value, ConfigMessage::TooManyLayers,
                           {static_cast<long>(JsonConfigSource::maximalLayerCount)});
    }
    std::reverse(entries.begin(), entries.end());
    for (const JsonValue& entry : entries) {
        if (isPath(entry)) {
            extendByName(layer, entry);
        } else {
            recordIssue(layer, entry, ConfigMessage::NoPath, {ca::utils::quoteValue(entry)});
        }
    }
}

void LayerChain::extendByName(std::size_t layer, const JsonValue& name) {
    const std::optional<path> file = resolve(layer, name);
    if (!file) {
        return;
    }
    const auto known = states.find(file->string());
    if (known != states.end() && known->second == State::Done) {
        return;
    }
    if (known != states.end()) {
        return recordIssue(layer, name, ConfigMessage::ExtendsInCircle, {quote(name.getString())});
    }
    if (layers.size() == JsonConfigSource::maximalLayerCount) {
        return recordIssue(layer, name, ConfigMessage::TooManyLayers,
                           {static_cast<long>(JsonConfigSource::maximalLayerCount)});
    }
    if (const Document document = getDocument(layer, name, *file)) {
        addLayer(file, document);
    }
}

/// The file that an entry means. Empty, with an issue, if that can't be told.
std::optional<path> LayerChain::resolve(std::size_t layer, const JsonValue& name) {
    const std::optional<path>& from = layers[layer].path;
    if (!from || manager == nullptr) {
        recordIssue(layer, name, ConfigMessage::ExtendsWithoutFile);
        return std::nullopt;
    }
    try {
        return manager->resolve(*from, name.getString());
    } catch (const ConfigFileError& error) {
        recordIssue(layer, name, ConfigMessage::UnreadableFile, {quote(name.getString()), error.what()});
        return std::nullopt;
    }
}

/// The content of a file that an entry means. Empty, with an issue, if it can't be had.
LayerChain::Document LayerChain::getDocument(std::size_t layer, const JsonValue& name, const path& file) {
    try {
        return manager->getDocument(file);
    } catch (const ConfigFileError& error) {
        recordIssue(layer, name, ConfigMessage::UnreadableFile, {quote(name.getString()), error.what()});
        return nullptr;
    }
}

/// What the manager makes of a file's own name, for the top layer's path comes from elsewhere.
std::u16string LayerChain::getIdentity(const path& path) const {
    const std::u16string& text = path.string();
    if (manager == nullptr) {
        return text;
    }
    try {
        return manager->resolve(path, text.substr(text.rfind(u'/') + 1)).string();
    } catch (const ConfigFileError&) {
        return text; // a name that no file can have is none that can be extended either
    }
}

void LayerChain::recordIssue(std::size_t layer, const JsonValue& value, ConfigMessage message,
                             std::vector<resource_core::BaseMsgID::Argument> arguments) {
    const auto& span = value.getSpan(); // a manager's own documents may have none
    layers[layer].issues.insert(makeIssue(makeMessage(message, std::move(arguments)), layers[layer].path,
                                          span ? Position(span->start) : std::nullopt,
                                          span ? Position(span->end) : std::nullopt));
}

LayerChain::Issues LayerChain::collectIssues(std::size_t first) const {
    Issues issues;
    for (std::size_t i = first; i < layers.size(); ++i) {
        issues.insert(layers[i].issues.begin(), layers[i].issues.end());
    }
    return issues;
}

std::shared_ptr<Config> LayerChain::makeBase() const {
    auto base = std::make_shared<Config>(std::make_shared<FactoryConfigSource>());
    for (std::size_t i = layers.size() - 1; i > 0; --i) {
        const std::shared_ptr<JsonConfigSource> source(
            new JsonConfigSource(layers[i].path, layers[i].document, base, collectIssues(i)));
        base = std::make_shared<Config>(source);
    }
    return base;
}

} // namespace ca::config
