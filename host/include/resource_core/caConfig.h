#pragma once

#include "resource_core/BaseMsgID.h"

#include <string>
#include <utility>

namespace CodeAnalyzer::caConfig {

/// Catalog of the messages about configurations.
inline constexpr const char* catalogName = "CodeAnalyzer:caConfig";

/// A message whose text is given by whoever records it: the catalog shows the one argument as it is.
struct PlaceholderError : resource_core::BaseMsgID {
    explicit PlaceholderError(std::u16string text)
        : BaseMsgID{{Argument(std::move(text))}, catalogName, "PlaceholderError"} {}
};

} // namespace CodeAnalyzer::caConfig
