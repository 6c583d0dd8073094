#include "config/LayerChain.h"

#include "ca/config/Config.h"
#include "ca/config/getIssueSeverity.h"
#include "config/quote.h"

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
    const std::size_t top = addFile(path, document);
    LayerSearch(*this, JsonConfigSource::maximalLayerCount).find(top, getTopName());
}

std::size_t LayerChain::addFile(const std::optional<path>& path, const Document& document) {
    File& file = files.emplace_back(File{path, document, {}, {}});
    for (const ca::utils::JsonFault& fault : document->faults) {
        file.issues.insert(makeIssue(fault.message, path, fault.start, fault.end));
    }
    readEntries(files.size() - 1);
    return files.size() - 1;
}

void LayerChain::readEntries(std::size_t layer) {
    const auto& root = files[layer].document->root;
    const ca::utils::JsonField* field = root ? root->find(u"extends") : nullptr;
    if (field == nullptr) {
        return;
    }
    std::vector<JsonValue> entries = getEntries(field->value);
    if (entries.size() > JsonConfigSource::maximalLayerCount) {
        return recordIssue(layer, field->value, ConfigMessage::TooManyLayers,
                           {static_cast<long>(JsonConfigSource::maximalLayerCount)});
    }
    files[layer].entries = std::move(entries);
}

/// What the manager makes of a file's own name, for the top layer's path comes from elsewhere.
std::optional<std::u16string> LayerChain::getTopName() const {
    const std::optional<path>& top = files.front().path;
    if (!top || manager == nullptr) {
        return std::nullopt;
    }
    const std::u16string& text = top->string();
    try {
        return manager->resolve(*top, text.substr(text.rfind(u'/') + 1)).string();
    } catch (const ConfigFileError&) {
        return text; // a name that no file can have is none that can be extended either
    }
}

std::optional<std::u16string> LayerChain::resolve(std::size_t layer, std::size_t entry) {
    const JsonValue& name = files[layer].entries[entry];
    if (!isPath(name)) {
        recordIssue(layer, name, ConfigMessage::NoPath, {ca::utils::quoteValue(name)});
        return std::nullopt;
    }
    const std::optional<path>& from = files[layer].path;
    if (!from || manager == nullptr) {
        recordIssue(layer, name, ConfigMessage::ExtendsWithoutFile);
        return std::nullopt;
    }
    try {
        return manager->resolve(*from, name.getString()).string();
    } catch (const ConfigFileError& error) {
        recordIssue(layer, name, ConfigMessage::UnreadableFile, {quote(name.getString()), error.what()});
        return std::nullopt;
    }
}

std::optional<std::size_t> LayerChain::load(std::size_t layer, std::size_t entry,
                                            const std::u16string& name) {
    try {
        if (const Document document = manager->getDocument(path(name))) {
            return addFile(path(name), document);
        }
    } catch (const ConfigFileError& error) {
        const JsonValue& value = files[layer].entries[entry];
        recordIssue(layer, value, ConfigMessage::UnreadableFile, {quote(value.getString()), error.what()});
    }
    return std::nullopt;
}

void LayerChain::refuse(std::size_t layer, std::size_t entry, ChainFault fault) {
    const JsonValue& name = files[layer].entries[entry];
    if (fault == ChainFault::Circle) {
        recordIssue(layer, name, ConfigMessage::ExtendsInCircle, {quote(name.getString())});
    } else {
        recordIssue(layer, name, ConfigMessage::TooManyLayers,
                    {static_cast<long>(JsonConfigSource::maximalLayerCount)});
    }
}

void LayerChain::recordIssue(std::size_t layer, const JsonValue& value, ConfigMessage message,
                             std::vector<resource_core::BaseMsgID::Argument> arguments) {
    const auto& span = value.getSpan(); // a manager's own documents may have none
    files[layer].issues.insert(makeIssue(makeMessage(message, std::move(arguments)), files[layer].path,
                                         span ? Position(span->start) : std::nullopt,
                                         span ? Position(span->end) : std::nullopt));
}

LayerChain::Issues LayerChain::collectIssues(std::size_t first) const {
    Issues issues;
    for (std::size_t i = first; i < files.size(); ++i) {
        issues.insert(files[i].issues.begin(), files[i].issues.end());
    }
    return issues;
}

std::shared_ptr<Config> LayerChain::makeBase() const {
    auto base = std::make_shared<Config>(std::make_shared<FactoryConfigSource>());
    for (std::size_t i = files.size() - 1; i > 0; --i) {
        const std::shared_ptr<JsonConfigSource> source(
            new JsonConfigSource(files[i].path, files[i].document, base, collectIssues(i)));
        base = std::make_shared<Config>(source);
    }
    return base;
}

} // namespace ca::config
