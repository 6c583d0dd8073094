#include "format/ProgramDifference.h"

#include "text/TextEncoding.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

namespace ombrel {

namespace {

using ca::lexer::TokenType;
using lf::astapi::NodeKind;

std::string quote(const TokenView& token) {
    constexpr std::size_t longest = 40;
    if (token.type == TokenType::EndOfInput) {
        return "the end of the text";
    }
    const ca::lexer::Token shown = {token.type, std::u16string(getCommentText(token)), 0, 0};
    const std::u16string text = shown.escapeLexeme();
    return fmt::format("'{}{}'", encodeLossy(text.substr(0, longest)), text.size() > longest ? "..." : "");
}

/// "matrix row" for MatrixRow.
std::string describeKind(NodeKind kind) {
    switch (kind) {
    case NodeKind::TokenLeaf2:
        return "separator";
    case NodeKind::TokenLeaf10:
        return "break";
    case NodeKind::TokenLeaf14:
        return "character literal";
    case NodeKind::TokenLeaf16:
        return "colon";
    case NodeKind::TokenLeaf19:
        return "continue";
    case NodeKind::TokenLeaf27:
        return "end index";
    case NodeKind::TokenLeaf33:
        return "shell line";
    case NodeKind::TokenLeaf58:
        return "return";
    case NodeKind::TokenLeaf61:
        return "string literal";
    default:
        break;
    }
    std::string words;
    for (const char c : std::string_view(lf::astapi::getNodeKindName(kind))) {
        const bool isCapital = 'A' <= c && c <= 'Z';
        words += isCapital && !words.empty() ? " " : "";
        words += isCapital ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return words;
}

std::string describeWithArticle(NodeKind kind) {
    const std::string words = describeKind(kind);
    const bool isSpokenWithVowel =
        std::string_view("aeio").find(words.front()) != std::string_view::npos; // "a unary operation"
    return (isSpokenWithVowel ? "an " : "a ") + words;
}

} // namespace

std::string describe(const Difference& difference, const Marks& before, const Marks& after,
                     const std::vector<ca::SyntaxError>& errors) {
    const SyntaxNode* const node = difference.node;
    switch (difference.kind) {
    case Difference::Kind::Token:
        return fmt::format("turn {} into {}", quote(before[difference.mark]),
                           quote(after[std::min(difference.markAfter, after.getCount() - 1)]));
    case Difference::Kind::NodeTaken:
        return fmt::format("take this {} out of its {}", describeKind(node->kind),
                           describeKind(difference.other->kind));
    case Difference::Kind::NodeAdded:
        return fmt::format("put this {} into the {} before it", describeKind(node->kind),
                           describeKind(difference.other->kind));
    case Difference::Kind::NodeTurned:
        return fmt::format("turn this {} into {}", describeKind(node->kind),
                           describeWithArticle(difference.other->kind));
    case Difference::Kind::NodeChanged:
        return fmt::format("change this {}", describeKind(node->kind));
    case Difference::Kind::Unparsable:
        break;
    }
    return fmt::format("make a text that doesn't parse here: {}", encodeLossy(errors.front().message));
}

} // namespace ombrel
