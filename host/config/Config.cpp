#include "ca/config/Config.h"

#include <utility>

namespace ca::config {

Config::Config(std::shared_ptr<ConfigSource> source) : source(std::move(source)) {}

std::unordered_set<ConfigIssue> Config::getSourceIssues() const {
    return source == nullptr ? std::unordered_set<ConfigIssue>() : source->getIssues();
}

} // namespace ca::config
