#include "ca/config/ConfigIssue.h"

#include <string>
#include <utility>

namespace ca::config {

namespace {

void mix(std::size_t& seed, std::size_t value) {
    seed ^= value + 0x9E3779B97F4A7C15 + (seed << 6) + (seed >> 2);
}

void mix(std::size_t& seed, const std::optional<ConfigPosition>& position) {
    mix(seed, position ? std::size_t{position->line} << 32 | position->column : 0);
}

void mix(std::size_t& seed, const resource_core::BaseMsgID& message) {
    mix(seed, std::hash<std::string>()(message.catalog));
    mix(seed, std::hash<std::string>()(message.key));
    for (const auto& argument : message.arguments) {
        mix(seed, std::hash<resource_core::BaseMsgID::Argument>()(argument));
    }
}

bool haveSameMessage(const ConfigIssue& left, const ConfigIssue& right) {
    if (left.message == nullptr || right.message == nullptr) {
        return left.message == right.message;
    }
    return *left.message == *right.message;
}

} // namespace

ConfigIssue::ConfigIssue(std::shared_ptr<resource_core::BaseMsgID> message, Severity severity,
                         std::optional<fl::filesystem::path> path, std::optional<ConfigPosition> start,
                         std::optional<ConfigPosition> end)
    : message(std::move(message)), severity(severity), path(std::move(path)), start(start), end(end) {}

bool operator==(const ConfigIssue& left, const ConfigIssue& right) {
    return haveSameMessage(left, right) && left.severity == right.severity && left.path == right.path &&
           left.start == right.start && left.end == right.end;
}

} // namespace ca::config

std::size_t std::hash<ca::config::ConfigIssue>::operator()(const ca::config::ConfigIssue& issue) const {
    std::size_t seed = static_cast<std::size_t>(issue.severity);
    if (issue.message != nullptr) {
        ca::config::mix(seed, *issue.message);
    }
    if (issue.path) {
        ca::config::mix(seed, std::hash<std::u16string>()(issue.path->string()));
    }
    ca::config::mix(seed, issue.start);
    ca::config::mix(seed, issue.end);
    return seed;
}
