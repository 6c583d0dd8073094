#pragma once

#include "text/TextEncoding.h"
#include <fl/i18n/MessageCatalog.h>

#include <cstdint>
#include <string>
#include <string_view>

/// UTF-8 for comparing and for failure messages.
inline std::string showText(std::u16string_view text) {
    return ombrel::encodeLossy(text);
}

inline std::string showMessage(const resource_core::BaseMsgID& message) {
    return showText(fl::i18n::MessageCatalog::get_message(message, fl::i18n::QrLocale::global()));
}

/// An issue as a line of text: "2:14 words".
inline std::string showIssue(std::uint32_t line, std::uint32_t column,
                             const resource_core::BaseMsgID& message) {
    return std::to_string(line) + ':' + std::to_string(column) + ' ' + showMessage(message) + '\n';
}
