#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fl::i18n {

/// Narrow text as 16-bit characters; empty if it isn't UTF-8.
std::optional<std::u16string> decode(std::string_view bytes);

/// The same with a replacement character for what isn't UTF-8.
std::u16string decodeLossy(std::string_view bytes);

} // namespace fl::i18n
