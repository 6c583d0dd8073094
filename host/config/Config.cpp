#include "ca/config/Config.h"

#include <utility>

namespace ca::config {

Config::Config(std::shared_ptr<ConfigSource> source) : source(std::move(source)) {}

} // namespace ca::config
