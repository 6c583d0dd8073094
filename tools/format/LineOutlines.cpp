#include "format/LineOutlines.h"

#include <algorithm>

namespace ombrel {

using namespace ca::formatting::legacy;
using ca::lexer::Token;

/// Room is reserved for code as people write it. Memory that isn't written to costs nothing.
LineOutlines::LineOutlines(const std::u16string& text) : text(text) {
    tokens.reserve(text.size() / 4);
    lines.reserve(text.size() / 16);
    ca::lexer::LineTokenizer tokenizer(text);
    for (auto line = tokenizer.next(); !line.empty(); line = tokenizer.next()) {
        // The line of a block comment that ends the text comes with the text's end, which is a line too.
        if (line.size() > 1 && endsLine(line[line.size() - 2].type)) {
            addLine(line.first(line.size() - 1));
            line = line.last(1);
        }
        addLine(line);
    }
}

void LineOutlines::addLine(std::span<const ca::lexer::TokenSpan> line) {
    const std::size_t before = tokens.size();
    std::uint32_t offset = 0;
    for (std::size_t index = 0; index != line.size(); ++index) {
        const auto& [type, length] = line[index];
        if (index < 2 || index + 3 >= line.size() || changesNesting(type)) {
            tokens.push_back({type, offset, length});
        }
        offset += length;
    }
    lines.push_back({offset, static_cast<std::uint32_t>(tokens.size() - before)});
}

bool LineOutlines::hasFunctionEnds(const LegacyFormatter& formatter) const {
    FunctionEndFinder finder(formatter);
    return std::any_of(tokens.begin(), tokens.end(),
                       [&finder](const auto& token) { return finder.isFunctionEnd(token.type); });
}

void LineOutlines::makeLine(const Line& line, Cursor& cursor, std::vector<Token>& scratch) const {
    ++cursor.number;
    scratch.resize(line.tokenCount);
    for (Token& token : scratch) {
        const OutlineToken& source = tokens[cursor.token++];
        token.type = source.type;
        token.lexeme.assign(text, cursor.offset + source.offset, source.length);
        token.line = cursor.number;
        token.column = source.offset + 1;
    }
    cursor.offset += line.length;
}

} // namespace ombrel
