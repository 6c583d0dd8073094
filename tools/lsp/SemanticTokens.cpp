#include "lsp/SemanticTokens.h"

#include "lsp/NameRoles.h"
#include "lsp/TokenHistory.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ombrel::lsp {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;
using Numbers = TokenHistory::Numbers;

constexpr const char* typeNames[] = {"namespace",  "class",     "function", "method",   "property", "event",
                                     "enumMember", "parameter", "variable", "modifier", "keyword",  "comment",
                                     "string",     "number",    "operator", "macro"};

/// The same in this order. Those of names are those of NameRole, less by one.
enum class Type : std::uint8_t {
    Keyword = 10,
    Comment,
    String,
    Number,
    Operator,
    Macro,
    None,
};

constexpr std::uint32_t declaration = 1; // a bit of the modifiers

bool isBetween(TokenType type, TokenType first, TokenType last) {
    return first <= type && type <= last;
}

Type getType(const Token& token) {
    const TokenType type = token.type;
    if (token.isComment()) {
        return Type::Comment;
    }
    if (isBetween(type, TokenType::Function, TokenType::OpeningKeyword26) || type == TokenType::EndIndex) {
        return Type::Keyword;
    }
    switch (type) {
    case TokenType::NumberToken29:
    case TokenType::NumberToken30:
    case TokenType::NumberToken99:
    case TokenType::NumberToken100:
        return Type::Number;
    case TokenType::CharacterLiteral:
    case TokenType::StringLiteral:
    case TokenType::CommandWord:
        return Type::String;
    case TokenType::Unmeasured33:
        return Type::Macro;
    case TokenType::PrefixOperator34:
    case TokenType::Continuation:
        return Type::Operator;
    default:
        break;
    }
    return isBetween(type, TokenType::PostfixOperator43, TokenType::ComparisonOperator72) ? Type::Operator
                                                                                          : Type::None;
}

/// The part of a token that is coloured: comments hold the whitespace before them, and line ends.
TextSpan getColoredSpan(const Token& token, std::size_t offset) {
    const std::u16string& text = token.lexeme;
    const std::size_t first = std::min(text.find_first_not_of(u" \t"), text.size());
    const std::size_t last = text.find_last_not_of(u" \t\r\n");
    return {offset + first, offset + (last == std::u16string::npos ? first : last + 1)};
}

class TokenWriter {
public:
    explicit TokenWriter(const Document& document) : document(document), finder(document.makeFinder()) {}

    void add(TextSpan span, std::uint32_t type, std::uint32_t modifiers) {
        const Position place = finder.find(span.begin);
        const std::uint32_t character =
            place.line == last.line ? place.character - last.character : place.character;
        const auto text = std::u16string_view(document.text).substr(span.begin, span.end - span.begin);
        numbers.insert(numbers.end(), {place.line - last.line, character, measure(text, document.encoding),
                                       type, modifiers});
        last = place;
    }

    Numbers numbers;

private:
    const Document& document;
    PositionFinder finder;
    Position last{0, 0};
};

/// The tokens that overlap a part of the document.
Numbers makeNumbers(const Question& question, TextSpan wanted) {
    const AnalysisPointer analysis = question.analyze();
    const TokenList tokens(*analysis);
    const std::vector<NameUse> names = analysis->parsed.analysis == nullptr
                                           ? std::vector<NameUse>(tokens.size())
                                           : findNameUses(*analysis, tokens);
    TokenWriter writer(question.getDocument());
    for (std::size_t i = 0; i < tokens.size() && tokens.getOffset(i) < wanted.end; ++i) {
        const TextSpan span = getColoredSpan(tokens[i], tokens.getOffset(i));
        if (span.end <= wanted.begin || span.begin == span.end) {
            continue;
        }
        if (names[i].role != NameRole::None) {
            writer.add(span, static_cast<std::uint32_t>(names[i].role) - 1,
                       names[i].isDeclaration ? declaration : 0);
        } else if (const Type type = getType(tokens[i]); type != Type::None) {
            writer.add(span, static_cast<std::uint32_t>(type), 0);
        }
    }
    return std::move(writer.numbers);
}

Numbers makeAllNumbers(const Question& question) {
    return makeNumbers(question, {0, question.getDocument().text.size()});
}

/// One change that makes the second list of the first.
Json writeChanges(const Numbers& before, const Numbers& after) {
    const auto [beforeFront, afterFront] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto [beforeBack, afterBack] = std::mismatch(before.rbegin(), std::reverse_iterator(beforeFront),
                                                       after.rbegin(), std::reverse_iterator(afterFront));
    if (beforeFront == before.end() && afterFront == after.end()) {
        return Json::array();
    }
    return Json::array({{{"start", beforeFront - before.begin()},
                         {"deleteCount", beforeBack.base() - beforeFront},
                         {"data", Numbers(afterFront, afterBack.base())}}});
}

/// Names a result, so that the client can ask for the difference to it. Large ones aren't kept for that.
Json writeResult(const Question& question, Json result, Numbers numbers) {
    constexpr std::size_t mostKept = 1 << 20;
    if (numbers.size() <= mostKept) {
        result["resultId"] = question.tokenHistory.keep(question.getDocument().uri, std::move(numbers));
    }
    return result;
}

} // namespace

Json describeTokenLegend() {
    static_assert(std::size(typeNames) == static_cast<std::size_t>(Type::None));
    return {{"tokenTypes", typeNames}, {"tokenModifiers", Json::array({"declaration"})}};
}

Json findTokens(const Question& question) {
    if (!question.isAboutSource()) {
        return {};
    }
    Numbers numbers = makeAllNumbers(question);
    Json data = numbers;
    return writeResult(question, {{"data", std::move(data)}}, std::move(numbers));
}

Json findTokensInRange(const Question& question) {
    if (!question.isAboutSource()) {
        return {};
    }
    const Document& document = question.getDocument();
    const Range range = readRange(question.params.at("range"));
    return {
        {"data", makeNumbers(question, {document.findOffset(range.start), document.findOffset(range.end)})}};
}

Json findTokenChanges(const Question& question) {
    const std::string& uri = question.getDocument().uri;
    const Numbers before =
        question.tokenHistory.find(uri, question.params.at("previousResultId").get<std::string>());
    if (before.empty() || !question.isAboutSource()) {
        return findTokens(question);
    }
    Numbers numbers = makeAllNumbers(question);
    Json edits = writeChanges(before, numbers);
    return writeResult(question, {{"edits", std::move(edits)}}, std::move(numbers));
}

} // namespace ombrel::lsp
