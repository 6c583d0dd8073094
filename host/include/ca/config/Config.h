#pragma once

#include "ca/config/ConfigSource.h"
#include "ombrel/api.h"

#include <memory>

namespace ca::config {

/// A configuration: a source, and what was read from it.
class OMBREL_HOST_API Config {
public:
    /// The source may be empty.
    explicit Config(std::shared_ptr<ConfigSource> source);

private:
    std::shared_ptr<ConfigSource> source;
};

} // namespace ca::config
