#include "lsp/SyntaxFault.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace ombrel::lsp {

namespace {

/// The number after a phrase of a message.
std::optional<std::size_t> findNumber(std::u16string_view message, std::u16string_view phrase) {
    const std::size_t place = message.find(phrase);
    if (place == std::u16string_view::npos) {
        return std::nullopt;
    }
    std::size_t number = 0;
    bool isThere = false;
    for (const char16_t c : message.substr(place + phrase.size())) {
        if (c < u'0' || c > u'9') {
            break;
        }
        number = 10 * number + (c - u'0');
        isThere = true;
    }
    return isThere ? std::optional(number) : std::nullopt;
}

/// The words in quotes before a place in a message: `if` in "'if' on line 3".
std::u16string_view findQuoted(std::u16string_view message, std::size_t place) {
    const std::size_t end = message.rfind(u'\'', place);
    if (end == std::u16string_view::npos || end == 0) {
        return {};
    }
    const std::size_t begin = message.rfind(u'\'', end - 1);
    return begin == std::u16string_view::npos ? std::u16string_view()
                                              : message.substr(begin + 1, end - begin - 1);
}

} // namespace

TextSpan findSpan(const Analysis& analysis, const ca::SyntaxError& error) {
    const std::size_t begin = analysis.document->findPlace(error.line, error.column);
    return {begin, std::min(begin + error.length, analysis.document->text.size())};
}

/// The host tells the other place only in words: "'if' on line 3", "the '(' in column 9".
std::optional<TextSpan> findPartner(const Analysis& analysis, const ca::SyntaxError& error) {
    const Document& document = *analysis.document;
    const std::u16string_view message = error.message;
    if (const auto column = findNumber(message, u" in column ")) {
        const std::size_t begin = document.findPlace(error.line, *column);
        return TextSpan{begin, std::min(begin + 1, document.text.size())};
    }
    const auto line = findNumber(message, u"' on line ");
    if (!line || *line == 0 || *line > document.lines.getLineCount()) {
        return std::nullopt;
    }
    const std::u16string_view word = findQuoted(message, message.find(u"' on line "));
    const std::size_t start = document.lines.getStart(*line - 1);
    const std::size_t end = document.lines.getEnd(document.text, *line - 1);
    const std::size_t found = std::u16string_view(document.text).substr(start, end - start).find(word);
    if (word.empty() || found == std::u16string_view::npos) {
        return TextSpan{start, end};
    }
    return TextSpan{start + found, start + found + word.size()};
}

} // namespace ombrel::lsp
