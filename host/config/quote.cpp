#include "config/quote.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace ca::utils {

namespace {

constexpr std::size_t maximalQuoteSize = 40;

std::u16string writeNumber(double value) {
    std::array<char, 32> buffer; // the shortest form of a double takes 24
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

} // namespace

std::u16string quote(std::u16string_view text) {
    std::size_t size = std::min(text.size(), maximalQuoteSize);
    if (size < text.size() && 0xD800 <= text[size - 1] && text[size - 1] <= 0xDBFF) {
        --size; // not through the middle of a surrogate pair
    }
    std::u16string quoted = u"\"" + std::u16string(text.substr(0, size));
    std::replace_if(
        quoted.begin(), quoted.end(), [](char16_t c) { return c < 0x20; }, u'\uFFFD');
    return quoted + (size < text.size() ? u"\u2026\"" : u"\"");
}

std::u16string quoteValue(const JsonValue& value) {
    switch (value.getKind()) {
    case JsonValue::BooleanKind:
        return value.getBoolean() ? u"true" : u"false";
    case JsonValue::StringKind:
        return quote(value.getString());
    case JsonValue::NumberKind:
        return writeNumber(value.getNumber());
    case JsonValue::ArrayKind:
        return u"an array";
    case JsonValue::ObjectKind:
        return u"an object";
    case JsonValue::NullKind:
        break;
    }
    return u"null";
}

} // namespace ca::utils
