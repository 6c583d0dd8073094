#pragma once

#include "config/FormattingConfig.h"

#include <ca/astapi/StringId.h>
#include <ca/config/Config.h>

#include <memory>

namespace ca::formatting {

/// The key under which a configuration keeps its formatting section. It is not the section's name in a JSON
/// text.
ca::astapi::StringId getFormattingSectionKey();

} // namespace ca::formatting

namespace ca::config {

/// The options of the tree formatter. What a JSON source says counts; factory, preference and legacy sources
/// answer with the factory options. Empty for a source of another class and without a source.
///
/// An exception while the section is made stores nothing, and the next call tries again.
template <>
std::shared_ptr<ca::formatting::FormattingConfig> Config::get<ca::formatting::FormattingConfig>() const;

template <>
std::shared_ptr<void> Config::create<ca::formatting::FormattingConfig>() const;

} // namespace ca::config
