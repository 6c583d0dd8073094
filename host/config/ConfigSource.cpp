#include "ca/config/ConfigSource.h"

#include "ca/config/Config.h"
#include "config/LayerChain.h"

#include <utility>

namespace ca::config {

ConfigSource::~ConfigSource() = default;
FactoryConfigSource::~FactoryConfigSource() = default;
LegacyConfigSource::~LegacyConfigSource() = default;
PreferenceConfigSource::~PreferenceConfigSource() = default;
JsonConfigSource::~JsonConfigSource() = default;

std::unordered_set<ConfigIssue> ConfigSource::getIssues() const {
    return {};
}

JsonConfigSource::JsonConfigSource(std::optional<fl::filesystem::path> path, const std::u16string& text,
                                   const std::shared_ptr<AbstractConfigManager>& manager)
    : path(std::move(path)),
      document(std::make_shared<const ca::utils::JsonDocument>(ca::utils::readJson(text))) {
    const LayerChain chain(this->path, document, manager.get());
    base = chain.makeBase();
    issues = chain.getIssues();
}

JsonConfigSource::JsonConfigSource(std::optional<fl::filesystem::path> path,
                                   std::shared_ptr<const ca::utils::JsonDocument> document,
                                   std::shared_ptr<Config> base, std::unordered_set<ConfigIssue> issues)
    : path(std::move(path)), document(std::move(document)), base(std::move(base)), issues(std::move(issues)) {
}

std::shared_ptr<Config> JsonConfigSource::getBaseConfig() const {
    return base;
}

std::optional<ca::utils::JsonValue> JsonConfigSource::getSection(const std::u16string& name) const {
    const ca::utils::JsonField* field = document->root ? document->root->find(name) : nullptr;
    return field == nullptr ? std::nullopt : std::optional(field->value);
}

std::optional<fl::filesystem::path> JsonConfigSource::getFilePath() const {
    return path;
}

std::unordered_set<ConfigIssue> JsonConfigSource::getIssues() const {
    return issues;
}

} // namespace ca::config
