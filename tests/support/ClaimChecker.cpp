// The table below says for each kind of node which tokens it claims; the walk compares them with the tokens
// that there are. It trusts neither the parser nor the formatter: the shapes are those of the language page.

#include "support/ClaimChecker.h"

#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace {

using namespace lf::astapi;
using ca::astapi::CA;
using ca::lexer::Token;
using ca::lexer::TokenType;
using Tree = Node<CA>;
using List = NodeList<CA>;

struct Shape {
    NodeKind kind;
    std::string_view text;
};

/// In a shape numbers are the types that the one token of a leaf may have. Otherwise:
///
///     word or sign     a token that is spelled so
///     space            a gap: whitespace, line ends and comments
///     ;                a gap that may also hold separators
///     $x  $x-          the child x, the children in the list x
///     $x* $x_ $x+      the children, each after a `;` gap, after a gap, after a comma between gaps
///     $x, $x&          the children, each after a gap, with commas between them, or after `<` and then `&`
///     $x' $x~          the elements of a row, the rows of a matrix
///     #x:...|          only if x is there
///     ^x:...|          only if the next token of code is spelled x
///     "                a dotted name that the tree doesn't have
///     !                the semicolon of a statement that isn't printed
#define SIGNATURE "^[:[ #outputs:$outputs' |] = |#outputs:$outputs- = |$name^(: ($parameters, )|"
#define MEMBERS "#attributes: ($attributes, )|$members*;end"
#define VALIDATION                                                                                           \
    "^(: ($dimensions, )|#classType: $classType|^{: {$validators, }|#defaultValue: = $defaultValue|"
constexpr Shape shapes[] = {
    {NodeKind::AnonymousFunction, "@ ($parameters, ) $body"},
    {NodeKind::TokenLeaf2, "35 36"},
    {NodeKind::ArgumentDefinition, "$name#member: . $member|#metaClassName: . ? $metaClassName|" VALIDATION},
    {NodeKind::ArgumentsBlock, "arguments" MEMBERS},
    {NodeKind::Assignment, "$target = $value!"},
    {NodeKind::Attribute, "#negated:~ |$name#value: = $value|"},
    {NodeKind::BraceIndexing, "$target {$arguments, }"},
    {NodeKind::TokenLeaf10, "2"},
    {NodeKind::CaseSelection, "case $value$body*"},
    {NodeKind::CatchBlock, "catch#identifier: $identifier|$body*;"},
    {NodeKind::CellLiteral, "{ $rows~}"},
    {NodeKind::TokenLeaf14, "31"},
    {NodeKind::ClassDefinition, "classdef#attributes: ($attributes, )| $name$superclasses&$members*;end"},
    {NodeKind::TokenLeaf16, "48"},
    {NodeKind::ColonExpression, "$first#step: : $step| : $last"},
    {NodeKind::CommandSyntax, "$command$words_!"},
    {NodeKind::TokenLeaf19, "11"},
    {NodeKind::ElseBlock, "else$body*;"},
    {NodeKind::ElseifBlock, "elseif $condition$body*;"},
    {NodeKind::FieldAccess, "$object . $field"},
    {NodeKind::DynamicFieldAccess, "$object . ( $expression )"},
    {NodeKind::TokenLeaf27, "86"},
    {NodeKind::EnumerationBlock, "enumeration" MEMBERS},
    {NodeKind::EnumerationMember, "$name#arguments: ($arguments, )|"},
    {NodeKind::EventDefinition, "$name"},
    {NodeKind::EventsBlock, "events" MEMBERS},
    {NodeKind::ExpressionStatement, "$expression!"},
    {NodeKind::TokenLeaf33, "33"},
    {NodeKind::ForStatement, "for $variable = $range$body*;end"},
    {NodeKind::Function, "function " SIGNATURE "$argumentsBlocks*$body*;^end:end|"},
    {NodeKind::GlobalDeclaration, "global$names_"},
    {NodeKind::IfStatement, "if $condition$body*;$elseifBlocks-#elseBlock:$elseBlock|end"},
    {NodeKind::Ignored, "34"},
    {NodeKind::ImportStatement, "import$words_!"},
    {NodeKind::InputArgument, "#identifier:$identifier|#ignored:$ignored|"},
    {NodeKind::MatrixLiteral, "[ $rows~]"},
    {NodeKind::MethodDeclaration, SIGNATURE},
    {NodeKind::MethodDefinition, "function " SIGNATURE "$argumentsBlocks*$body*;end"},
    {NodeKind::MethodsBlock, "methods" MEMBERS},
    {NodeKind::MultipleAssignment, "[ #outputs:$outputs' |] = $value!"},
    {NodeKind::NamedArgument, "$name = $value"},
    {NodeKind::NumberLiteral, "29 30 99 100"},
    {NodeKind::OtherwiseBlock, "otherwise$body*"},
    {NodeKind::ParenthesisIndexing, "$target ($arguments, )"},
    {NodeKind::ParenthesizedExpression, "( $inner )"},
    {NodeKind::ParforStatement, "parfor^(: (| $variable = $range$options+^): )|$body*;end"},
    {NodeKind::PersistentDeclaration, "persistent$names_"},
    {NodeKind::PrintingStatement, "$statement"},
    {NodeKind::ProgramFile, "$statements*;"},
    {NodeKind::PropertiesBlock, "properties" MEMBERS},
    {NodeKind::PropertyDefinition, "$name^@: @ \"|" VALIDATION},
    {NodeKind::TokenLeaf58, "15"},
    {NodeKind::MatrixRow, "$elements'"},
    {NodeKind::SpmdStatement, "spmd^(: ($arguments, )|$body*;end"},
    {NodeKind::TokenLeaf61, "32"},
    {NodeKind::SwitchStatement, "switch $subject$cases*#otherwise:;$otherwise|;end"},
    {NodeKind::TryStatement, "try$body*;#catchBlock:$catchBlock|end"},
    {NodeKind::WhileStatement, "while $condition$body*;end"},
};
#undef SIGNATURE
#undef MEMBERS
#undef VALIDATION

constexpr std::string_view binarySpellings[] = {"+",  "-",   "*",  "/",  "\\", "^", ".*",
                                                "./", ".\\", ".^", "==", "~=", "<", "<=",
                                                ">",  ">=",  "&&", "&",  "||", "|", "@"};
constexpr std::string_view unarySpellings[] = {"+", "-", "'", ".'", "~", "@", "?", ")"};

/// The fields of a node by name that are still to be claimed; a child is a list of one, what is absent is
/// empty.
struct Fields {
    void child(const char* name, const Tree* node) {
        if (node != nullptr) {
            lists[name] = {node};
        }
    }
    void list(const char* name, const List& nodes) { lists[name].assign(nodes.begin(), nodes.end()); }
    void words(const char* name, const List& nodes) { list(name, nodes); }
    void number(const char*, std::int32_t) {}
    void flag(const char* name, bool isSet) { lists[name].resize(isSet ? 1 : 0); }
    void text(const char*, std::u16string_view) {}
    void validation(const char*, const ValidationSpec<CA>* spec) {
        if (spec != nullptr) {
            list("dimensions", spec->dimensions);
            child("classType", spec->classType);
            list("validators", spec->validators);
        }
    }

    std::map<std::string_view, std::vector<const Tree*>> lists;
};

class Walk {
public:
    explicit Walk(const std::vector<Token>& tokens) : tokens(tokens) {
        positions.reserve(tokens.size());
        std::size_t position = 0;
        for (const Token& token : tokens) {
            positions.push_back(position);
            position += token.lexeme.size();
        }
    }

    std::size_t run(const ProgramFile<CA>& root) {
        dispatch(root);
        if (index + 1 != tokens.size()) {
            fail("expected the end of the text");
        }
        return claims + 1;
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        const Token& token = tokens[std::min(index, tokens.size() - 1)];
        throw std::runtime_error(std::to_string(token.line) + ":" + std::to_string(token.column) + ": " +
                                 what + ", found " + getTokenTypeName(token.type));
    }

    std::u16string_view peek() const {
        std::size_t next = index;
        while (tokens.at(next).isWhitespace()) {
            ++next;
        }
        return tokens[next].lexeme;
    }

    void gap(std::string_view separators = "") {
        ++claims;
        while (index < tokens.size() &&
               (tokens[index].isWhitespace() || isAnyOf(tokens[index].lexeme, separators))) {
            ++index;
        }
    }

    static bool isAnyOf(std::u16string_view lexeme, std::string_view signs) {
        return lexeme.size() == 1 && signs.find(static_cast<char>(lexeme[0])) != signs.npos;
    }

    static bool isSpelled(std::u16string_view lexeme, std::string_view text) {
        return std::equal(lexeme.begin(), lexeme.end(), text.begin(), text.end());
    }

    bool isAt(TokenType type) const { return tokens.at(index).type == type; }

    bool isAtName() const { return isAt(TokenType::NameToken27) || isAt(TokenType::NameToken28); }

    void take(bool isExpected, std::string_view what) {
        if (!isExpected) {
            fail("expected " + std::string(what));
        }
        ++index;
        ++claims;
    }

    /// A keyword or sign. A name, a word of a command or an index may be spelled like a keyword.
    void take(std::string_view text) {
        const bool isWord = isAtName() || isAt(TokenType::EndIndex) || isAt(TokenType::CommandWord);
        take(!isWord && isSpelled(tokens.at(index).lexeme, text), text);
    }

    void takeName() { take(isAtName(), "a name"); }

    void visit(const Tree* node, const Tree& parent) {
        const Token& token = tokens.at(index);
        if (node->parent != &parent) {
            fail(std::string("the parent is wrong of a ") + getNodeKindName(node->kind));
        }
        if (node->position != positions[index] || node->line != token.line || node->column != token.column) {
            fail(std::string("the place is wrong of a ") + getNodeKindName(node->kind));
        }
        dispatch(*node);
    }

    void dispatch(const Tree& node) {
        switch (node.kind) {
        case NodeKind::Identifier:
            return identifier(as<Identifier>(node));
        case NodeKind::BinaryOperation:
            return binary(as<BinaryOperation>(node));
        case NodeKind::UnaryOperation:
            return unary(as<UnaryOperation>(node));
        default:
            break;
        }
        const auto shape = std::find_if(std::begin(shapes), std::end(shapes),
                                        [&](const Shape& row) { return row.kind == node.kind; });
        if (shape == std::end(shapes)) {
            fail(std::string("a node that is never delivered: ") + getNodeKindName(node.kind));
        }
        std::string_view text = shape->text;
        if (text.front() >= '0' && text.front() <= '9') {
            const std::string type = std::to_string(static_cast<int>(tokens.at(index).type));
            return take((' ' + std::string(text) + ' ').find(' ' + type + ' ') != text.npos, text);
        }
        Fields fields;
        visitFields(node, fields);
        follow(text, node, fields);
        for (const auto& [name, left] : fields.lists) {
            if (!left.empty()) {
                fail("nothing claims the " + std::string(name));
            }
        }
    }

    /// Follows the shape up to the end of it or of its innermost part.
    void follow(std::string_view& shape, const Tree& node, Fields& fields) {
        while (!shape.empty()) {
            const char sign = shape.front();
            if (sign >= 'a' && sign <= 'z') {
                take(cutWord(shape));
                continue;
            }
            shape.remove_prefix(1);
            switch (sign) {
            case ' ':
                gap();
                break;
            case ';':
                gap(";,");
                break;
            case '$':
                children(shape, node, fields);
                break;
            case '#':
            case '^':
                option(sign, shape, node, fields);
                break;
            case '|':
                return;
            case '"':
                dottedName();
                break;
            case '!':
                terminator(node);
                break;
            default:
                take(std::string_view(&sign, 1));
            }
        }
    }

    static std::string_view cutWord(std::string_view& shape) {
        const auto end = std::find_if(shape.begin(), shape.end(),
                                      [](char c) { return (c < 'a' || c > 'z') && (c < 'A' || c > 'Z'); });
        const auto word = shape.substr(0, static_cast<std::size_t>(end - shape.begin()));
        shape.remove_prefix(word.size());
        return word;
    }

    void option(char sign, std::string_view& shape, const Tree& node, Fields& fields) {
        const std::string_view name = shape.substr(0, shape.find(':'));
        shape.remove_prefix(name.size() + 1);
        std::vector<const Tree*>& list = fields.lists[name];
        if (sign == '#' ? !list.empty() : isSpelled(peek(), name)) {
            if (sign == '#' && list.front() == nullptr) {
                list.clear(); // a flag
            }
            return follow(shape, node, fields);
        }
        for (int depth = 1; depth > 0; shape.remove_prefix(1)) {
            depth += shape[0] == '#' || shape[0] == '^' ? 1 : 0;
            depth -= shape[0] == '|' ? 1 : 0;
        }
    }

    void children(std::string_view& shape, const Tree& node, Fields& fields) {
        const std::vector<const Tree*> list = std::exchange(fields.lists[cutWord(shape)], {});
        const std::string_view modes = "-*_+,&'~";
        const char mode = shape.empty() || modes.find(shape[0]) == modes.npos ? '\0' : shape[0];
        shape.remove_prefix(mode == '\0' ? 0 : 1);
        if (mode == '\0' && list.size() != 1) {
            fail("a child is missing");
        }
        for (const Tree* child : list) {
            before(mode, child == list.front());
            visit(child, node);
        }
        if (mode == '\'' && peek() == u",") {
            gap(",");
        }
        if (mode == '~' && !list.empty()) {
            if (peek() == u";" || peek() == u"]") {
                gap(";");
            }
            gap();
        }
    }

    /// What the shape has before each child of a list.
    void before(char mode, bool isFirst) {
        switch (mode) {
        case '*':
            return gap(";,");
        case '_':
            return gap();
        case ',':
            return isFirst ? gap() : separator(",");
        case '+':
            return separator(",");
        case '&':
            return separator(isFirst ? "<" : "&");
        case '\'':
            return isFirst ? void() : gap(",");
        case '~':
            return isFirst ? void() : gap(";");
        default:
            return;
        }
    }

    void separator(std::string_view sign) {
        gap();
        take(sign);
        gap();
    }

    void terminator(const Tree& node) {
        if (node.parent->kind != NodeKind::PrintingStatement) {
            gap();
            take(";");
        }
    }

    void dottedName() {
        takeName();
        while (peek() == u".") {
            separator(".");
            takeName();
        }
    }

    /// A name with as many parts as its text has, or a word of a command.
    void identifier(const Identifier<CA>& node) {
        const std::size_t first = index;
        if (isAt(TokenType::CommandWord)) {
            take(true, "");
        } else {
            takeName();
            for (auto dots = std::count(node.text.begin(), node.text.end(), u'.'); dots > 0; --dots) {
                separator(".");
                takeName();
            }
        }
        std::u16string text;
        std::for_each(tokens.begin() + static_cast<std::ptrdiff_t>(first),
                      tokens.begin() + static_cast<std::ptrdiff_t>(index),
                      [&](const Token& token) { text += token.lexeme; });
        if (text != node.text) {
            fail("the text of a name is wrong");
        }
    }

    /// Chains are long, so this goes down to the first operand in a loop.
    void binary(const BinaryOperation<CA>& top) {
        std::vector<const BinaryOperation<CA>*> chain{&top};
        while (chain.back()->left->kind == NodeKind::BinaryOperation) {
            chain.push_back(&as<BinaryOperation>(*chain.back()->left));
            if (chain.back()->parent != chain[chain.size() - 2] || chain.back()->position != top.position) {
                fail("the parent or the place is wrong of an operation");
            }
        }
        visit(chain.back()->left, *chain.back());
        for (; !chain.empty(); chain.pop_back()) {
            separator(binarySpellings[chain.back()->operatorNumber]);
            visit(chain.back()->right, *chain.back());
        }
    }

    void unary(const UnaryOperation<CA>& node) {
        const std::string_view spelling = unarySpellings[node.operatorNumber];
        if (spelling.find_first_of("')") != spelling.npos) {
            visit(node.operand, node);
            gap();
            return take(spelling);
        }
        const bool isForHeader = node.operatorNumber == 0 && isSpelled(tokens.at(index).lexeme, "(");
        take(isForHeader ? "(" : spelling);
        gap();
        visit(node.operand, node);
    }

    const std::vector<Token>& tokens;
    std::vector<std::size_t> positions;
    std::size_t index = 0;
    std::size_t claims = 0;
};

} // namespace

std::size_t countClaims(const ProgramFile<CA>& root, const std::vector<Token>& tokens) {
    return Walk(tokens).run(root);
}

std::string checkClaims(const ProgramFile<CA>& root, const std::vector<Token>& tokens) {
    try {
        countClaims(root, tokens);
        return {};
    } catch (const std::exception& fault) {
        return fault.what();
    }
}
