#pragma once

#include "fl/filesystem/basic_path.h"
#include "ombrel/api.h"
#include "resource_core/BaseMsgID.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace ca::config {

/// How much an issue matters.
enum class Severity : std::uint32_t {
    Warning = 0, ///< the configuration still says what it said
    Error = 1,   ///< something that was asked for has no effect
};

/// A place in a configuration file. Lines and columns count from 1, columns in 16-bit characters.
struct ConfigPosition {
    ConfigPosition(std::uint32_t line, std::uint32_t column) : line(line), column(column) {}

    friend bool operator==(const ConfigPosition&, const ConfigPosition&) = default;

    std::uint32_t line;
    std::uint32_t column;
};

/// One problem found in a configuration: the message, and where in which file it is about, if that is known.
struct OMBREL_HOST_API ConfigIssue {
    ConfigIssue(std::shared_ptr<resource_core::BaseMsgID> message, Severity severity,
                std::optional<fl::filesystem::path> path, std::optional<ConfigPosition> start,
                std::optional<ConfigPosition> end);

    std::shared_ptr<resource_core::BaseMsgID> message; ///< may be null
    Severity severity;
    std::optional<fl::filesystem::path> path;
    std::optional<ConfigPosition> start;
    std::optional<ConfigPosition> end; ///< just after the last character
};

/// Two issues are equal if they say the same about the same place; messages are compared by content.
OMBREL_HOST_API bool operator==(const ConfigIssue& left, const ConfigIssue& right);

} // namespace ca::config

template <>
struct OMBREL_HOST_API std::hash<ca::config::ConfigIssue> {
    std::size_t operator()(const ca::config::ConfigIssue& issue) const;
};
