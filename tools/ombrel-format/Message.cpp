#include "Message.h"

#include "LineSplitter.h"
#include "TextEncoding.h"

#include <ostream>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr std::size_t shownBefore = 100; // 16-bit characters in front of the caret
constexpr std::size_t shownBehind = 60;

bool isTrailSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xDC00;
}

bool isControl(char16_t c) {
    return (c < 0x20 && c != u'\t') || (0x7F <= c && c < 0xA0) || c == 0x2028 || c == 0x2029;
}

/// The line's text without its end; empty if there is no such line.
std::u16string_view getLineContent(std::u16string_view text, std::uint32_t number) {
    LineSplitter lines(text);
    for (std::uint32_t line = 1; const auto next = lines.getNext(); ++line) {
        if (line == number) {
            return next->content;
        }
    }
    return {};
}

std::string getPrintable(std::u16string text) {
    for (char16_t& c : text) {
        c = isControl(c) ? u'?' : c;
    }
    return encodeLossy(text);
}

/// Blanks as wide as `text`: a tab stays one, and a surrogate pair is one character.
std::string getPadding(std::u16string_view text) {
    std::string padding;
    for (const char16_t c : text) {
        if (!isTrailSurrogate(c)) {
            padding += c == u'\t' ? '\t' : ' ';
        }
    }
    return padding;
}

void printSourceLine(std::ostream& stream, std::u16string_view line, std::size_t caret, Color color) {
    const std::size_t first = caret > shownBefore ? caret - shownBefore : 0;
    const std::u16string_view shown = line.substr(first, caret - first + shownBehind);
    const char* paint = color == Color::On ? "\033[1;32m" : "";
    const char* plain = color == Color::On ? "\033[0m" : "";
    stream << "  " << getPrintable(std::u16string(shown)) << "\n  "
           << getPadding(shown.substr(0, caret - first)) << paint << '^' << plain << '\n';
}

std::string getErrorWord(Color color) {
    return color == Color::On ? "\033[1;31merror:\033[0m" : "error:";
}

} // namespace

std::string getPrintableName(std::string_view bytes) {
    return getPrintable(decodeLossy(bytes));
}

void printProblem(std::ostream& stream, std::string_view path, const Problem& problem,
                  std::u16string_view text, Color color) {
    const std::string place =
        problem.line == 0 ? std::string() : fmt::format("{}:{}:", problem.line, problem.column);
    stream << getPrintableName(path) << ':' << place << ' ' << getErrorWord(color) << ' ' << problem.text
           << '\n';
    if (problem.line == 0) {
        return;
    }
    const std::u16string_view line = getLineContent(text, problem.line);
    if (!line.empty() && problem.column - 1 <= line.size()) {
        printSourceLine(stream, line, problem.column - 1, color);
    }
}

void printUsageError(std::ostream& stream, std::string_view program, std::string_view text, Color color) {
    stream << program << ": " << getErrorWord(color) << ' ' << text << '\n';
}

} // namespace ombrel
