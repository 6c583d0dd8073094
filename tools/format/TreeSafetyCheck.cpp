#include "format/TreeSafetyCheck.h"

#include "text/TextEncoding.h"
#include "text/Whitespace.h"

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

/// A difference at a mark of the text before, and what it is about: one or two nodes, or a token.
struct Difference {
    enum class Kind { Token, NodeTaken, NodeAdded, NodeTurned, NodeChanged, Unparsable };

    Kind kind;
    std::size_t mark;
    const SyntaxNode* node = nullptr;  ///< of NodeTaken and NodeAdded, what is taken or added
    const SyntaxNode* other = nullptr; ///< what it becomes, is taken out of, or is added to
    std::size_t markAfter = 0;         ///< of the token that is there now
};

bool isMark(const Token& token) {
    const bool isSeparator = token.type == TokenType::Semicolon || token.type == TokenType::Comma;
    return token.isComment() || (!token.isWhitespace() && !isSeparator);
}

/// The characters of whitespace that a comment's token starts with.
std::size_t getIndentation(const Token& token) {
    return token.isComment() ? countLeadingWhitespace(token.lexeme) : 0;
}

/// The tokens that formatting has to leave alone, comments among them, so that a comment can't change places
/// with code.
class Marks {
public:
    explicit Marks(const std::vector<Token>& tokens) {
        std::size_t position = 0;
        for (const Token& token : tokens) {
            if (isMark(token)) {
                marks.push_back({&token, position + getIndentation(token)});
            }
            position += token.lexeme.size();
        }
    }

    std::size_t getCount() const { return marks.size(); }
    const Token& operator[](std::size_t i) const { return *marks[i].token; }
    std::size_t getPosition(std::size_t i) const { return marks[i].position; }

    /// The first mark at a node's first character or after it.
    std::size_t find(const SyntaxNode& node) const {
        return getNumber(std::partition_point(
            marks.begin(), marks.end(), [&](const Mark& mark) { return mark.position < node.position; }));
    }

    /// The first mark at the place of an error or after it.
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

/// A comment without its indentation, and a line of a block without its line end.
std::u16string_view getCommentText(const Token& token) {
    return trim(removeLineEnds(token.lexeme));
}

/// A comment may move after code or to a line of its own; a block comment's lines stay what they are.
TokenType getCommentType(const Token& token) {
    return token.type == TokenType::TrailingComment ? TokenType::LineComment : token.type;
}

bool isSame(const Token& a, const Token& b) {
    if (a.isComment() && b.isComment()) {
        return getCommentType(a) == getCommentType(b) && getCommentText(a) == getCommentText(b);
    }
    return a.isComment() == b.isComment() && a.lexeme == b.lexeme;
}

std::string quote(const Token& token) {
    constexpr std::size_t longest = 40;
    if (token.type == TokenType::EndOfInput) {
        return "the end of the text";
    }
    Token shown = token;
    shown.lexeme = getCommentText(token);
    const std::u16string text = shown.escapeLexeme();
    return fmt::format("'{}{}'", encodeLossy(text.substr(0, longest)), text.size() > longest ? "..." : "");
}

/// Which mark of the text before each mark of the text after is. Where nothing is known about the edits that
/// made one of the other, marks of the same number; otherwise marks at the place that the edits leave them.
class Pairing {
public:
    Pairing(const Marks& before, const Marks& after, std::vector<Difference>& differences) {
        const std::size_t count = std::min(before.getCount(), after.getCount());
        for (std::size_t i = 0; i < count; ++i) {
            compare(before, i, after, i, differences);
        }
    }

    Pairing(const Marks& before, const Marks& after, const Edits& edits,
            std::vector<Difference>& differences) {
        auto edit = edits.begin();
        std::size_t shift = 0; // may wrap around: only sums are looked at
        std::size_t next = 0;
        for (std::size_t i = 0; i < before.getCount(); ++i) {
            for (; edit != edits.end() && edit->offset + edit->length <= before.getPosition(i); ++edit) {
                shift += edit->text.size() - edit->length;
            }
            const std::size_t place = before.getPosition(i) + shift;
            for (; next < after.getCount() && after.getPosition(next) < place; ++next) {
                numbers.push_back(i);
                differences.push_back({Difference::Kind::Token, i, nullptr, nullptr, next});
            }
            if (next < after.getCount() && after.getPosition(next) == place) {
                compare(before, i, after, next++, differences);
                numbers.push_back(i);
            } else {
                differences.push_back({Difference::Kind::Token, i, nullptr, nullptr, next});
            }
        }
    }

    std::size_t getBefore(std::size_t markAfter) const {
        return markAfter < numbers.size() ? numbers[markAfter] : markAfter;
    }

private:
    static void compare(const Marks& before, std::size_t a, const Marks& after, std::size_t b,
                        std::vector<Difference>& differences) {
        if (!isSame(before[a], after[b])) {
            differences.push_back({Difference::Kind::Token, a, nullptr, nullptr, b});
        }
    }

    std::vector<std::size_t> numbers; ///< empty if all are the same
};

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

/// A field of a node, or one element of a field that is a list.
struct Part {
    enum class Kind { Child, Element, ListEnd, Number, Text };

    Kind kind;
    const SyntaxNode* owner;
    const SyntaxNode* child = nullptr; ///< null for an optional child that is absent
    std::int32_t number = 0;
    std::u16string_view text = {};
};

bool hasChild(const Part& part) {
    return part.child != nullptr;
}

/// Collects the parts of one node in order. Nodes of one kind have the same parts up to the first list whose
/// lengths differ, and there one has a list's end where the other has an element.
class PartCollector {
public:
    PartCollector(const SyntaxNode& owner, std::vector<Part>& parts) : owner(&owner), parts(parts) {}

    void child(const char*, const SyntaxNode* node) { parts.push_back({Part::Kind::Child, owner, node}); }

    void list(const char*, const SyntaxList& nodes) {
        for (const SyntaxNode* node : nodes) {
            parts.push_back({Part::Kind::Element, owner, node});
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

/// Walks two trees at once, from the root and from left to right. A node that differs is looked at no
/// further, and neither are elements of a list that have no counterpart at the same mark.
class TreeComparison {
public:
    TreeComparison(const ParsedText& before, const Marks& beforeMarks, const std::u16string& afterText,
                   const Marks& afterMarks, const Pairing& pairing, std::vector<Difference>& differences)
        : before(before), beforeMarks(beforeMarks), afterText(afterText), afterMarks(afterMarks),
          pairing(pairing), differences(differences) {}

    void run(const SyntaxNode& beforeRoot, const SyntaxNode& afterRoot) {
        expand(beforeRoot, afterRoot);
        while (!work.empty()) {
            const auto [a, b] = work.back();
            work.pop_back();
            if (isSame(a, b) && hasChild(a)) {
                expand(*a.child, *b.child);
            }
        }
    }

private:
    using Kind = Difference::Kind;

    std::size_t findBefore(const SyntaxNode& node) const { return beforeMarks.find(node); }
    std::size_t findAfter(const SyntaxNode& node) const { return pairing.getBefore(afterMarks.find(node)); }

    void expand(const SyntaxNode& a, const SyntaxNode& b) {
        beforeParts.clear();
        afterParts.clear();
        lf::astapi::visitFields(a, PartCollector(a, beforeParts));
        lf::astapi::visitFields(b, PartCollector(b, afterParts));
        const std::size_t start = work.size();
        pairParts();
        std::reverse(work.begin() + static_cast<std::ptrdiff_t>(start), work.end());
    }

    /// An element that one list has and the other hasn't gets an absent one as its partner.
    void pairParts() {
        auto b = afterParts.begin();
        for (const Part& a : beforeParts) {
            while (b != afterParts.end() && b->kind == Part::Kind::Element && isBefore(*b, a)) {
                work.emplace_back(Part{Part::Kind::Element, a.owner}, *b++);
            }
            const bool isLonger =
                a.kind == Part::Kind::Element &&
                (b == afterParts.end() || b->kind != Part::Kind::Element || isBefore(a, *b));
            if (isLonger) {
                work.emplace_back(a, Part{Part::Kind::Element, a.owner});
            } else if (b != afterParts.end()) {
                work.emplace_back(a, *b++);
            }
        }
    }

    bool isBefore(const Part& a, const Part& b) const {
        if (b.kind != Part::Kind::Element) {
            return true;
        }
        return a.owner == beforeParts.front().owner ? findBefore(*a.child) < findAfter(*b.child)
                                                    : findAfter(*a.child) < findBefore(*b.child);
    }

    bool isSame(const Part& a, const Part& b) {
        if (hasChild(a) && hasChild(b)) {
            return isSameNode(*a.child, *b.child);
        }
        if (hasChild(a)) {
            return fail({Kind::NodeTaken, findBefore(*a.child), a.child, a.owner});
        }
        if (hasChild(b)) {
            return fail({Kind::NodeAdded, findAfter(*b.child), b.child, b.owner});
        }
        if (a.kind != b.kind || a.number != b.number || a.text != b.text) {
            return fail({Kind::NodeChanged, findBefore(*a.owner), a.owner});
        }
        return true;
    }

    bool isSameNode(const SyntaxNode& a, const SyntaxNode& b) {
        const std::size_t mark = findBefore(a);
        if (a.kind != b.kind) {
            return fail({Kind::NodeTurned, mark, &a, &b});
        }
        const bool isOtherSeparator =
            a.kind == NodeKind::TokenLeaf2 && before.text[a.position] != afterText[b.position];
        return (mark == findAfter(b) && !isOtherSeparator) || fail({Kind::NodeChanged, mark, &a});
    }

    bool fail(Difference difference) {
        differences.push_back(difference);
        return false;
    }

    const ParsedText& before;
    const Marks& beforeMarks;
    const std::u16string& afterText;
    const Marks& afterMarks;
    const Pairing& pairing;
    std::vector<Difference>& differences;
    std::vector<std::pair<Part, Part>> work;
    std::vector<Part> beforeParts;
    std::vector<Part> afterParts;
};

/// Both texts side by side, with all that is different.
class Comparison {
public:
    Comparison(const ParsedText& before, const std::u16string& after, const Edits* edits)
        : after(after), beforeMarks(*before.parsed.tokens), afterMarks(*this->after.parsed.tokens) {
        const Pairing pairing = edits == nullptr ? Pairing(beforeMarks, afterMarks, differences)
                                                 : Pairing(beforeMarks, afterMarks, *edits, differences);
        if (const ca::AnalysisResult* analysis = this->after.parsed.analysis.get()) {
            TreeComparison(before, beforeMarks, after, afterMarks, pairing, differences)
                .run(*before.parsed.analysis->getProgramFile(), *analysis->getProgramFile());
        }
        for (const ca::SyntaxError& error : this->after.parsed.errors) {
            differences.push_back({Difference::Kind::Unparsable, pairing.getBefore(afterMarks.find(error))});
        }
    }

    std::optional<Problem> getFirst() const {
        const auto first = std::min_element(differences.begin(), differences.end(),
                                            [](const auto& a, const auto& b) { return a.mark < b.mark; });
        return first == differences.end() ? std::nullopt : std::optional(describe(*first));
    }

    std::vector<std::size_t> getPlaces() const {
        std::vector<std::size_t> places;
        places.reserve(differences.size());
        for (const Difference& difference : differences) {
            places.push_back(beforeMarks.getPosition(getMark(difference)));
        }
        std::sort(places.begin(), places.end());
        return places;
    }

private:
    std::size_t getMark(const Difference& difference) const {
        return std::min(difference.mark, beforeMarks.getCount() - 1);
    }

    Problem describe(const Difference& difference) const {
        const Token& token = beforeMarks[getMark(difference)];
        return {Code::UnsafeResult,
                fmt::format("the formatter would {}; nothing was written", getWords(difference)), token.line,
                token.column + static_cast<std::uint32_t>(getIndentation(token))};
    }

    std::string getWords(const Difference& difference) const {
        const SyntaxNode* const node = difference.node;
        switch (difference.kind) {
        case Difference::Kind::Token:
            return fmt::format("turn {} into {}", quote(beforeMarks[getMark(difference)]),
                               quote(afterMarks[std::min(difference.markAfter, afterMarks.getCount() - 1)]));
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
        return fmt::format("make a text that doesn't parse here: {}",
                           encodeLossy(after.parsed.errors.front().message));
    }

    ParsedText after;
    Marks beforeMarks;
    Marks afterMarks;
    std::vector<Difference> differences;
};

} // namespace

std::optional<Problem> checkSameProgram(const ParsedText& before, const std::u16string& after) {
    return Comparison(before, after, nullptr).getFirst();
}

ProgramDifferences findDifferences(const ParsedText& before, const std::u16string& after,
                                   const Edits& edits) {
    const Comparison comparison(before, after, &edits);
    return {comparison.getPlaces(), comparison.getFirst()};
}

} // namespace ombrel
