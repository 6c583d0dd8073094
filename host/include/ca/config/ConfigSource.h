#pragma once

#include "ombrel/api.h"

namespace ca::config {

/// Where a configuration comes from. The kind of a source is its dynamic type.
class OMBREL_HOST_API ConfigSource {
public:
    virtual ~ConfigSource() = default;
};

/// The source without content: every option has its factory value.
class OMBREL_HOST_API FactoryConfigSource : public ConfigSource {
public:
    FactoryConfigSource();
};

} // namespace ca::config
