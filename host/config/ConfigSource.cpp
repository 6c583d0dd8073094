#include "ca/config/ConfigSource.h"

namespace ca::config {

ConfigSource::~ConfigSource() = default;
FactoryConfigSource::~FactoryConfigSource() = default;
LegacyConfigSource::~LegacyConfigSource() = default;
PreferenceConfigSource::~PreferenceConfigSource() = default;

std::unordered_set<ConfigIssue> ConfigSource::getIssues() const {
    return {};
}

} // namespace ca::config
