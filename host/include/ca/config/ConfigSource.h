#pragma once

#include "ombrel/api.h"

namespace ca::config {

/// Where a configuration comes from. Which of the classes below a source is decides what its sections are.
class OMBREL_HOST_API ConfigSource {
public:
    ConfigSource(const ConfigSource&) = delete;
    ConfigSource& operator=(const ConfigSource&) = delete;
    virtual ~ConfigSource();

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

} // namespace ca::config
