#include "format/GapText.h"

#include "text/Whitespace.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace ombrel {

namespace {

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

/// The length of the line end that a text starts with; 0 if it starts with something else.
std::size_t getLineEndLength(std::u16string_view text) {
    return text.starts_with(u"\r\n") ? 2 : isLineEnd(text.front()) ? 1 : 0;
}

bool endsLine(const TokenView& token) {
    return token.isEndOfLine() || token.lexeme.ends_with(u'\n') || token.lexeme.ends_with(u'\r');
}

} // namespace

std::u16string getLayout(const GapList& gaps, std::size_t gap, std::u16string_view text) {
    std::u16string layout;
    if (text.find(u'%') == text.npos && text.find(u"...") == text.npos) {
        appendNormalized(layout, text);
        return layout;
    }
    std::vector<GapComment> comments;
    if (!findComments(gaps, gap, text, comments)) {
        throw std::logic_error("this text isn't one of that gap");
    }
    std::size_t done = 0;
    for (const GapComment& comment : comments) {
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
    std::vector<TokenView> tokens;
    gaps.visitTokens(gap, [&](const TokenView& token, std::size_t) {
        tokens.push_back(token);
        return true;
    });
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
    while (!a.empty() && !b.empty()) {
        const std::size_t endA = getLineEndLength(a);
        const std::size_t endB = getLineEndLength(b);
        if ((endA == 0) != (endB == 0) || (endA == 0 && a.front() != b.front())) {
            return false;
        }
        a.remove_prefix(std::max<std::size_t>(endA, 1));
        b.remove_prefix(std::max<std::size_t>(endB, 1));
    }
    return a.empty() && b.empty();
}

} // namespace ombrel
