#include "config/FormattingSection.h"

#include "config/FormattingFactoryConfig.h"
#include "config/FormattingJsonConfig.h"

#include <ca/config/ConfigSource.h>

namespace ca::formatting {

ca::astapi::StringId getFormattingSectionKey() {
    static const ca::astapi::StringId key(u"Formatting");
    return key;
}

} // namespace ca::formatting

namespace ca::config {

using ca::formatting::FormattingConfig;
using ca::formatting::FormattingFactoryConfig;
using ca::formatting::FormattingJsonConfig;

namespace {

/// The section for a source if that is of the given class; otherwise empty.
template <class Section, class Source>
std::shared_ptr<void> makeFor(const std::shared_ptr<ConfigSource>& source) {
    const auto concrete = std::dynamic_pointer_cast<Source>(source);
    return concrete == nullptr ? nullptr : std::make_shared<Section>(concrete);
}

} // namespace

template <>
std::shared_ptr<FormattingConfig> Config::get<FormattingConfig>() const {
    const std::lock_guard guard(lock);
    const ca::astapi::StringId key = ca::formatting::getFormattingSectionKey();
    auto section = sections.find(key);
    if (section == sections.end()) {
        section = sections.emplace(key, create<FormattingConfig>()).first; // empty ones too
    }
    return std::static_pointer_cast<FormattingConfig>(section->second);
}

template <>
std::shared_ptr<void> Config::create<FormattingConfig>() const {
    if (auto section = makeFor<FormattingFactoryConfig, FactoryConfigSource>(source)) {
        return section;
    }
    if (auto section = makeFor<FormattingFactoryConfig, PreferenceConfigSource>(source)) {
        return section;
    }
    if (auto section = makeFor<FormattingFactoryConfig, LegacyConfigSource>(source)) {
        return section;
    }
    return makeFor<FormattingJsonConfig, JsonConfigSource>(source);
}

} // namespace ca::config
