#include "ca/config/ConfigSource.h"

namespace ca::config {

ConfigSource::~ConfigSource() = default;
FactoryConfigSource::~FactoryConfigSource() = default;
LegacyConfigSource::~LegacyConfigSource() = default;
PreferenceConfigSource::~PreferenceConfigSource() = default;

} // namespace ca::config
