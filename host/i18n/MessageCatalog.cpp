#include "fl/i18n/MessageCatalog.h"

#include "i18n/ConfigMessages.h"
#include "i18n/utf8.h"
#include "resource_core/caConfig.h"

#include <string_view>

namespace fl::i18n {

namespace {

using Argument = resource_core::BaseMsgID::Argument;

std::u16string toText(const Argument& argument) {
    if (const auto* text = std::get_if<std::u16string>(&argument)) {
        return *text;
    }
    if (const auto* text = std::get_if<std::string>(&argument)) {
        return decodeLossy(*text);
    }
    return decodeLossy(std::to_string(std::get<long>(argument)));
}

/// Puts arguments where the words have {0}, {1} and so on. What else the words hold stays as it is, and so
/// does a place without an argument.
std::u16string fill(std::u16string_view words, const std::vector<Argument>& arguments) {
    std::u16string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool isPlace = words[i] == u'{' && i + 2 < words.size() && words[i + 2] == u'}';
        const std::size_t index = isPlace ? static_cast<std::size_t>(words[i + 1] - u'0') : arguments.size();
        if (index < arguments.size()) {
            text += toText(arguments[index]);
            i += 2;
        } else {
            text += words[i];
        }
    }
    return text;
}

std::u16string showAsItIs(const resource_core::BaseMsgID& id) {
    std::u16string text = decodeLossy(id.catalog + ':' + id.key);
    const char16_t* separator = u": ";
    for (const Argument& argument : id.arguments) {
        text += separator + toText(argument);
        separator = u", ";
    }
    return text;
}

} // namespace

std::u16string MessageCatalog::get_message(const resource_core::BaseMsgID& id, const QrLocale&) {
    const bool isKnown = id.catalog == CodeAnalyzer::caConfig::catalogName;
    const std::u16string_view words = isKnown ? getConfigWords(id.key) : std::u16string_view();
    return words.empty() ? showAsItIs(id) : fill(words, id.arguments);
}

} // namespace fl::i18n
