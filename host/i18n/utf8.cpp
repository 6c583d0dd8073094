#include "i18n/utf8.h"

#include <limits>
#include <stdexcept>

#include <unicode/ustring.h>

namespace fl::i18n {

namespace {

std::optional<std::u16string> decode(std::string_view bytes, UChar32 replacement) {
    if (bytes.size() > std::size_t{std::numeric_limits<std::int32_t>::max()}) {
        throw std::length_error("too long to be converted");
    }
    std::u16string text(bytes.size(), u'\0'); // never more 16-bit characters than bytes
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(text.data(), static_cast<std::int32_t>(text.size()), &length, bytes.data(),
                         static_cast<std::int32_t>(bytes.size()), replacement, nullptr, &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(length));
    return text;
}

} // namespace

std::optional<std::u16string> decode(std::string_view bytes) {
    return decode(bytes, U_SENTINEL);
}

std::u16string decodeLossy(std::string_view bytes) {
    return *decode(bytes, 0xFFFD);
}

} // namespace fl::i18n
