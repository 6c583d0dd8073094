#include "format/GapText.h"

#include <algorithm>
#include <vector>

namespace ombrel {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

void appendNormalized(std::u16string& result, std::u16string_view text) {
    for (;;) {
        const std::size_t length = std::min(text.find(u'\r'), text.size());
        result += text.substr(0, length);
        text.remove_prefix(length);
        if (text.empty()) {
            return;
        }
        result += u'\n';
        text.remove_prefix(text.starts_with(u"\r\n") ? 2 : 1);
    }
}

bool endsLine(const Token& token) {
    return token.isEndOfLine() || token.lexeme.ends_with(u'\n') || token.lexeme.ends_with(u'\r');
}

} // namespace

std::u16string getLayout(const GapList& gaps, std::size_t gap, std::u16string_view text) {
    std::u16string layout;
    if (text.find(u'%') == text.npos && text.find(u"...") == text.npos) {
        appendNormalized(layout, text);
        return layout;
    }
    const auto comments = findComments(gaps, gap, text);
    std::size_t done = 0;
    for (const GapComment& comment : comments.value()) {
        appendNormalized(layout, text.substr(done, comment.offset - done));
        layout += u'%';
        done = comment.offset + comment.text.size();
    }
    appendNormalized(layout, text.substr(done));
    return layout;
}

std::u16string getSeparators(std::u16string_view layout) {
    std::u16string separators;
    bool isContinued = false;
    for (const char16_t c : layout) {
        if (c == u',' || c == u';' || (c == u'\n' && !isContinued)) {
            separators += c;
        }
        isContinued = c == u'.' || (isContinued && c != u'\n');
    }
    return separators;
}

std::u16string getKeptText(const GapList& gaps, std::size_t gap, bool isTrimming) {
    std::u16string text;
    const auto tokens = gaps.getTokens(gap);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const bool isWhitespace = tokens[i].type == TokenType::Whitespace;
        const bool isLineStart = i > 0 && endsLine(tokens[i - 1]);
        const bool isBlankLine = i + 1 < tokens.size() && tokens[i + 1].isEndOfLine();
        if (!isTrimming || !isWhitespace || (isLineStart && !isBlankLine)) {
            appendNormalized(text, tokens[i].lexeme);
        }
    }
    return text;
}

bool isSameText(std::u16string_view a, std::u16string_view b) {
    if (a == b) {
        return true;
    }
    if (a.find(u'\r') == a.npos && b.find(u'\r') == b.npos) {
        return false;
    }
    std::u16string normalizedA;
    std::u16string normalizedB;
    appendNormalized(normalizedA, a);
    appendNormalized(normalizedB, b);
    return normalizedA == normalizedB;
}

} // namespace ombrel
