#include "format/TreeSafetyCheck.h"

#include "text/TextEncoding.h"

#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

using ca::astapi::CA;
using ca::lexer::Token;
using ca::lexer::TokenType;
using lf::astapi::NodeKind;
using SyntaxNode = lf::astapi::Node<CA>;
using SyntaxList = lf::astapi::NodeList<CA>;
using Validation = lf::astapi::ValidationSpec<CA>;

/// What a difference comes to, and the number of the mark where it is.
struct Difference {
    std::size_t mark;
    std::string text;
};

bool isMark(const Token& token) {
    const bool isSeparator = token.type == TokenType::Semicolon || token.type == TokenType::Comma;
    return token.isComment() || (!token.isWhitespace() && !isSeparator);
}

/// The tokens that formatting has to leave alone, comments among them, so that a comment can't change places
/// with code. A mark has the same number in both texts, which is how a place in one is found in the other.
class Marks {
public:
    explicit Marks(const std::vector<Token>& tokens) {
        std::size_t position = 0;
        for (const Token& token : tokens) {
            if (isMark(token)) {
                marks.push_back({&token, position});
            }
            position += token.lexeme.size();
        }
    }

    std::size_t getCount() const { return marks.size(); }
    const Token& operator[](std::size_t i) const { return *marks[i].token; }

    /// The first mark at a node's first character or behind it.
    std::size_t find(const SyntaxNode& node) const {
        return getNumber(std::partition_point(
            marks.begin(), marks.end(), [&](const Mark& mark) { return mark.position < node.position; }));
    }

    /// The first mark at the place of an error or behind it.
    std::size_t find(const ca::SyntaxError& error) const {
        const auto isBefore = [&](const Mark& mark) {
            return std::pair(mark.token->line, mark.token->column) < std::pair(error.line, error.column);
        };
        return getNumber(std::partition_point(marks.begin(), marks.end(), isBefore));
    }

private:
    struct Mark {
        const Token* token;
        std::size_t position; ///< in the text, 16-bit characters from 0
    };

    std::size_t getNumber(std::vector<Mark>::const_iterator mark) const {
        return static_cast<std::size_t>(mark - marks.begin());
    }

    std::vector<Mark> marks; ///< ends in the end of the text
};

std::u16string_view getTrimmed(std::u16string_view text) {
    constexpr std::u16string_view edges = u" \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(edges), text.size()));
    return text.substr(0, text.find_last_not_of(edges) + 1);
}

/// A comment may move behind code or to a line of its own; a block comment's lines stay what they are.
TokenType getCommentType(const Token& token) {
    return token.type == TokenType::TrailingComment ? TokenType::LineComment : token.type;
}

bool isSame(const Token& a, const Token& b) {
    if (a.isComment() && b.isComment()) {
        return getCommentType(a) == getCommentType(b) && getTrimmed(a.lexeme) == getTrimmed(b.lexeme);
    }
    return a.isComment() == b.isComment() && a.lexeme == b.lexeme;
}

std::string quote(const Token& token) {
    constexpr std::size_t longest = 40;
    if (token.type == TokenType::EndOfInput) {
        return "the end of the text";
    }
    Token shown = token;
    shown.lexeme = getTrimmed(token.lexeme);
    const std::u16string text = shown.escapeLexeme();
    return fmt::format("'{}{}'", encodeLossy(text.substr(0, longest)), text.size() > longest ? "..." : "");
}

std::optional<Difference> findTokenDifference(const Marks& a, const Marks& b) {
    const std::size_t count = std::min(a.getCount(), b.getCount());
    for (std::size_t i = 0; i < count; ++i) {
        if (!isSame(a[i], b[i])) {
            return Difference{i, fmt::format("turn {} into {}", quote(a[i]), quote(b[i]))};
        }
    }
    return std::nullopt;
}

/// "matrix row" for MatrixRow.
std::string describe(NodeKind kind) {
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
    const std::string words = describe(kind);
    const bool isSpokenWithVowel =
        std::string_view("aeio").find(words.front()) != std::string_view::npos; // "a unary operation"
    return (isSpokenWithVowel ? "an " : "a ") + words;
}

/// A field of a node, or one element of a field that is a list.
struct Part {
    enum class Kind { Child, ListEnd, Number, Text };

    Kind kind;
    const SyntaxNode* owner;
    const SyntaxNode* child = nullptr; ///< null for an optional child that is absent
    std::int32_t number = 0;
    std::u16string_view text = {};
};

bool hasChild(const Part& part) {
    return part.kind == Part::Kind::Child && part.child != nullptr;
}

/// Collects the parts of one node in order. Nodes of one kind have the same parts up to the first list whose
/// lengths differ, and there one has a list's end where the other has an element.
class PartCollector {
public:
    PartCollector(const SyntaxNode& owner, std::vector<Part>& parts) : owner(&owner), parts(parts) {}

    void child(const char*, const SyntaxNode* node) { parts.push_back({Part::Kind::Child, owner, node}); }

    void list(const char* name, const SyntaxList& nodes) {
        for (const SyntaxNode* node : nodes) {
            child(name, node);
        }
        parts.push_back({Part::Kind::ListEnd, owner});
    }

    void words(const char* name, const SyntaxList& nodes) { list(name, nodes); }

    void number(const char*, std::int32_t value) {
        parts.push_back({Part::Kind::Number, owner, nullptr, value});
    }

    void flag(const char* name, bool value) { number(name, value ? 1 : 0); }

    void text(const char*, std::u16string_view value) {
        parts.push_back({Part::Kind::Text, owner, nullptr, 0, value});
    }

    void validation(const char* name, const Validation* spec) {
        flag(name, spec != nullptr);
        if (spec != nullptr) {
            list("dimensions", spec->dimensions);
            child("classType", spec->classType);
            list("validators", spec->validators);
        }
    }

private:
    const SyntaxNode* owner;
    std::vector<Part>& parts;
};

/// Walks two trees at once, from the root and from left to right, up to the first difference.
class TreeComparison {
public:
    TreeComparison(const std::u16string& beforeText, const Marks& before, const std::u16string& afterText,
                   const Marks& after)
        : beforeText(beforeText), before(before), afterText(afterText), after(after) {}

    std::optional<Difference> run(const SyntaxNode& beforeRoot, const SyntaxNode& afterRoot) {
        expand(beforeRoot, afterRoot);
        while (!work.empty()) {
            const auto [a, b] = work.back();
            work.pop_back();
            if (auto difference = compare(a, b)) {
                return difference;
            }
            if (hasChild(a)) {
                expand(*a.child, *b.child);
            }
        }
        return std::nullopt;
    }

private:
    void expand(const SyntaxNode& a, const SyntaxNode& b) {
        beforeParts.clear();
        afterParts.clear();
        lf::astapi::visitFields(a, PartCollector(a, beforeParts));
        lf::astapi::visitFields(b, PartCollector(b, afterParts));
        for (std::size_t i = std::min(beforeParts.size(), afterParts.size()); i > 0; --i) {
            work.emplace_back(beforeParts[i - 1], afterParts[i - 1]);
        }
    }

    std::optional<Difference> compare(const Part& a, const Part& b) const {
        if (hasChild(a) && hasChild(b)) {
            return compareNodes(*a.child, *b.child);
        }
        if (hasChild(a)) {
            return Difference{
                before.find(*a.child),
                fmt::format("take this {} out of its {}", describe(a.child->kind), describe(a.owner->kind))};
        }
        if (hasChild(b)) {
            return Difference{after.find(*b.child),
                              fmt::format("put this {} into the {} before it", describe(b.child->kind),
                                          describe(b.owner->kind))};
        }
        if (a.kind != b.kind || a.number != b.number || a.text != b.text) {
            return describeChange(*a.owner);
        }
        return std::nullopt;
    }

    std::optional<Difference> compareNodes(const SyntaxNode& a, const SyntaxNode& b) const {
        const std::size_t mark = before.find(a);
        if (a.kind != b.kind) {
            return Difference{
                mark, fmt::format("turn this {} into {}", describe(a.kind), describeWithArticle(b.kind))};
        }
        const bool isOtherSeparator =
            a.kind == NodeKind::TokenLeaf2 && beforeText[a.position] != afterText[b.position];
        if (mark != after.find(b) || isOtherSeparator) {
            return describeChange(a);
        }
        return std::nullopt;
    }

    Difference describeChange(const SyntaxNode& node) const {
        return {before.find(node), fmt::format("change this {}", describe(node.kind))};
    }

    const std::u16string& beforeText;
    const Marks& before;
    const std::u16string& afterText;
    const Marks& after;
    std::vector<std::pair<Part, Part>> work;
    std::vector<Part> beforeParts;
    std::vector<Part> afterParts;
};

std::optional<Difference> findTreeDifference(const ParsedText& before, const Marks& beforeMarks,
                                             const ParsedText& after, const Marks& afterMarks) {
    if (!after.parsed.errors.empty()) {
        const ca::SyntaxError& error = after.parsed.errors.front();
        return Difference{afterMarks.find(error),
                          fmt::format("make a text that doesn't parse here: {}", encodeLossy(error.message))};
    }
    TreeComparison comparison(before.text, beforeMarks, after.text, afterMarks);
    return comparison.run(*before.parsed.analysis->getProgramFile(),
                          *after.parsed.analysis->getProgramFile());
}

Problem describe(const Difference& difference, const Marks& marks) {
    const Token& token = marks[std::min(difference.mark, marks.getCount() - 1)];
    const std::size_t blanks = std::min(token.lexeme.find_first_not_of(u" \t"), token.lexeme.size());
    return {Code::UnsafeResult, fmt::format("the formatter would {}; nothing was written", difference.text),
            token.line, token.column + static_cast<std::uint32_t>(blanks)};
}

} // namespace

std::optional<Problem> checkSameProgram(const ParsedText& before, const std::u16string& afterText) {
    const ParsedText after(afterText);
    const Marks beforeMarks(*before.parsed.tokens);
    const Marks afterMarks(*after.parsed.tokens);
    auto first = findTokenDifference(beforeMarks, afterMarks);
    const auto inTree = findTreeDifference(before, beforeMarks, after, afterMarks);
    if (inTree && (!first || inTree->mark < first->mark)) {
        first = inTree;
    }
    return first ? std::optional(describe(*first, beforeMarks)) : std::nullopt;
}

} // namespace ombrel
