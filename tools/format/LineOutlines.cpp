#include "format/LineOutlines.h"

#include <ca/lexer/LineTokenizer.h>

#include <algorithm>

namespace ombrel {

using namespace ca::formatting::legacy;
using ca::lexer::Token;

/// Room is reserved for code as people write it. Memory that isn't written to costs nothing.
LineOutlines::LineOutlines(const std::u16string& text) : text(text) {
    tokens.reserve(text.size() / 4);
    lines.reserve(text.size() / 16);
    ca::lexer::LineTokenizer tokenizer(text);
    std::vector<OutlineToken> line;
    for (auto spans = tokenizer.next(); !spans.empty(); spans = tokenizer.next()) {
        std::uint32_t offset = 0;
        for (const auto& span : spans) {
            const auto length = static_cast<std::uint32_t>(span.length);
            line.push_back({span.type, offset, length});
            offset += length;
            if (endsLine(span.type)) {
                addLine(line);
                line.clear();
                offset = 0;
            }
        }
    }
    addLine(line);
}

void LineOutlines::addLine(const std::vector<OutlineToken>& all) {
    const std::size_t before = tokens.size();
    for (std::size_t index = 0; index != all.size(); ++index) {
        if (index < 2 || index + 3 >= all.size() || changesNesting(all[index].type)) {
            tokens.push_back(all[index]);
        }
    }
    lines.push_back(
        {all.back().offset + all.back().length, static_cast<std::uint32_t>(tokens.size() - before)});
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
