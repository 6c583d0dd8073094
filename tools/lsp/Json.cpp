#include "lsp/Json.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <stdexcept>

namespace ombrel::lsp {

namespace {

constexpr std::size_t escapeLength = 6; // of \uD800

/// The number of a `\uXXXX` at the start of the text; 0 if it starts with none.
unsigned readEscape(std::string_view text) {
    if (text.size() < escapeLength || text[0] != '\\' || text[1] != 'u') {
        return 0;
    }
    const std::string_view digits = text.substr(2, 4);
    const bool isNumber =
        std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isxdigit(c) != 0; });
    return isNumber ? static_cast<unsigned>(std::stoul(std::string(digits), nullptr, 16)) : 0;
}

bool isHighSurrogate(unsigned unit) {
    return (unit & 0xFC00U) == 0xD800U;
}

bool isLowSurrogate(unsigned unit) {
    return (unit & 0xFC00U) == 0xDC00U;
}

/// Backslashes only occur in strings, so the text needn't be parsed for this.
void replaceLoneSurrogates(std::string& body) {
    std::size_t place = body.find('\\');
    while (place != std::string::npos) {
        const std::string_view rest = std::string_view(body).substr(place);
        const unsigned unit = readEscape(rest);
        std::size_t length = unit == 0 ? 2 : escapeLength;
        if (isHighSurrogate(unit) &&
            isLowSurrogate(readEscape(rest.substr(std::min(escapeLength, rest.size()))))) {
            length = 2 * escapeLength;
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            body.replace(place + 2, 4, "FFFD");
        }
        place = body.find('\\', place + length);
    }
}

/// Deep values would be too much for the call stack where a value is printed.
bool checkDepth(int depth, Json::parse_event_t /*event*/, Json& /*value*/) {
    if (depth > maximalMessageDepth) {
        throw std::length_error("nested too deeply");
    }
    return true;
}

} // namespace

tl::expected<Json, std::string> parseMessage(std::string body) {
    replaceLoneSurrogates(body);
    try {
        return Json::parse(body, checkDepth);
    } catch (const Json::parse_error& error) {
        return tl::unexpected("not JSON: byte " + std::to_string(error.byte));
    } catch (const Json::out_of_range&) {
        return tl::unexpected(std::string("a number is too large"));
    } catch (const std::length_error& error) {
        return tl::unexpected(std::string(error.what()));
    }
}

} // namespace ombrel::lsp
