#pragma once

#include "ca/astapi/CA.h"
#include "lexer/Nesting.h"
#include "lf/astapi/Nodes.h"
#include "syntax/Arena.h"
#include "syntax/SyntaxErrors.h"
#include "syntax/TokenCursor.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ca::syntax {

using CA = astapi::CA;
using Node = lf::astapi::Node<CA>;
using NodeKind = lf::astapi::NodeKind;
using NodeList = lf::astapi::NodeList<CA>;
using ValidationSpec = lf::astapi::ValidationSpec<CA>;

/// A recursive-descent parser over the tokens of one text.
///
/// A fault is reported and then thrown as `Abandoned`, which the loop over statements (or members, or the
/// header of a block) catches: it skips to the end of the statement and goes on, so that one fault is one
/// error. Only brackets, blocks, prefix and postfix operators recurse or deepen the tree, and each of them
/// counts as a level; chains of binary operators run over explicit stacks.
class Parser {
public:
    /// Source text and arena have to outlive the tree; identifiers point into the text.
    Parser(std::u16string_view text, std::span<const TokenSpan> tokens, Arena& arena, SyntaxErrors& errors);

    /// The root, whose contents are whole only if no error was reported. Call once.
    const lf::astapi::ProgramFile<CA>* parseFile();

private:
    struct Abandoned {}; ///< this statement is given up; its fault is reported
    struct Stopped {};   ///< the whole parse is given up

    /// What a fault leaves in disorder and recovery puts right.
    struct Context {
        std::size_t pending, operands, operators, brackets, blocks;
        int indexDepth;
        bool blankSeparates;
    };

    struct OpenBlock {
        CodeToken keyword;
        bool isReported; ///< its missing `end` follows from a fault that is reported already
    };

    struct Operator {
        int precedence; ///< the larger the tighter
        int number;     ///< of a BinaryOperation; a colon has none
    };

    enum class Arguments { OfCall, OfIndex, Plain };
    enum class Outputs { OfAssignment, OfFunction };
    enum class Power { Allowed, NotAllowed };

    /// Counts levels of nesting while it lives.
    class Levels {
    public:
        explicit Levels(Parser& parser) : parser(parser) {}
        ~Levels() { parser.depth -= count; }
        Levels(const Levels&) = delete;
        Levels& operator=(const Levels&) = delete;
        void enter();
        void enterBlock();

    private:
        Parser& parser;
        int count = 0;
    };

    // Faults and recovery (Recovery.cpp).
    void report(std::u16string_view identifier, std::u16string message, const CodeToken& at);
    [[noreturn]] void fail(std::u16string_view identifier, std::u16string message, const CodeToken& at);
    [[noreturn]] void failBefore(std::u16string_view identifier, std::u16string_view what);
    [[noreturn]] void failExpected(std::u16string_view what);
    [[noreturn]] void failUnclosed(const CodeToken& open);
    void failIfUnrecognized();
    bool isInReportedHeader(const CodeToken& at) const;
    void checkUnclosedComment();
    std::u16string describePlace(const CodeToken& partner) const;
    Token getToken(const CodeToken& code) const { return makeToken(text, code); }
    std::u16string quoteCurrent() const { return quoteToken(getToken(cursor.get())); }
    Context getContext() const;
    void restore(const Context& context);
    void skipStatement(const Context& start);
    lexer::Brackets getOpenBrackets(std::size_t first) const;
    bool reportTooDeep();
    template <class Parse>
    bool parseOrSkip(Parse parse);

    // Tokens (Tokens.cpp).
    bool isAt(TokenType wanted) const { return cursor.getType() == wanted; }
    bool isAtName() const { return isName(cursor.get()); }
    static bool isName(const CodeToken& code) {
        return code.type == TokenType::NameToken27 || code.type == TokenType::NameToken28;
    }
    bool isAtSeparator() const;
    bool skipIf(TokenType wanted);
    void skipSeparators();
    void expectAssign(std::u16string_view what);
    CodeToken openBracket();
    void closeBracket(const CodeToken& open);

    // Nodes (NodeFactory.h).
    template <class NodeClass>
    NodeClass* make(const CodeToken& first);
    template <class NodeClass>
    NodeClass* make(const Node* first);
    const Node* takeLeaf(NodeKind kind);
    const Node* own(const Node* parent, const Node* child);
    NodeList takePending(std::size_t mark, const Node* parent);

    // Expressions (ExpressionParser.cpp).
    const Node* parseExpression();
    bool findBinaryOperator(Operator& found) const;
    void reduce(std::size_t firstOperator, int precedence, Levels& levels);
    const Node* makeColon(const Node* left, const Node* right, Levels& levels);
    const Node* parsePrefixed(Power power);
    const Node* parsePower();
    const Node* makeUnary(const CodeToken& first, int number, const Node* operand);
    const Node* parseReference();
    const Node* parsePostfix(const Node* target);
    const Node* parsePrimary();
    const Node* parseNumber();
    const Node* parseEndIndex();
    const Node* parseParenthesized();
    const Node* parseAt();
    const Node* parseAnonymousFunction(const CodeToken& at);
    const Node* parseClassQuery();
    const Node* parseInParentheses();
    const Node* parseFieldAccess(const Node* object);
    const Node* parseClassOfMethod(const Node* left);
    const Node* makeBinary(int number, const Node* left, const Node* right);
    bool isAtClassOfMethod(const Node* left) const;
    const Node* parseName(std::u16string_view what);
    const Node* parseDottedName(std::u16string_view what);

    // Lists (ListParser.cpp).
    void parseArguments(Arguments kind);
    const Node* parseArgument(Arguments kind);
    const Node* parseNamedArgument();
    template <class Indexing>
    const Node* parseIndexing(const Node* target, Arguments kind);
    const Node* parseMatrix();
    const Node* parseCell();
    void parseParameters();
    const Node* parseParameter();
    const Node* parseParenthesisIndexing(const Node* target);
    const Node* parseBraceIndexing(const Node* target);
    template <class Literal>
    const Node* parseLiteral(TokenType close);
    void parseRows(TokenType close);
    const Node* parseRow(TokenType close);
    const Node* parseOutput(Outputs kind);
    void parseOutputs(Outputs kind);

    // Files and statements (Parser.cpp, StatementParser.cpp).
    void parseClassFile();
    void parseStatements();
    bool endsStatements();
    void parseStatement();
    const Node* parseBlockStatement();
    const Node* parseMisplaced(const Node* (Parser::*parse)(), std::u16string_view message);
    const Node* parseSimpleStatement();
    void rejectStray();
    [[noreturn]] void rejectBranch(std::u16string_view block);
    void rejectClosingBracket();
    const Node* parseLeafStatement(NodeKind kind);
    template <class Declaration>
    const Node* parseDeclaration();
    const Node* parseImport();
    const Node* parseCommand();
    NodeList parseWords(const Node* parent);
    const Node* parseExpressionStatement();
    void checkTarget(const Node* target, const CodeToken& at);
    bool isMultipleAssignment() const;
    const Node* parseMultipleAssignment();
    const Node* finishStatement(const Node* statement);
    void expectStatementEnd();

    // Blocks (BlockParser.cpp).
    bool isTakenByOpenBlock(TokenType branch) const;
    void openBlock();
    void closeBlock();
    void reportUnclosed();
    NodeList parseBody(const Node* parent);
    void rejectMoreBranches(std::u16string_view last);
    const Node* parseIf();
    const Node* parseElseif();
    const Node* parseElse();
    const Node* parseWhile();
    const Node* parseFor();
    template <class Loop>
    void parseLoopHeader(Loop* node);
    void parseForInParentheses(lf::astapi::ForStatement<CA>* node);
    const Node* parseParfor();
    const Node* parseSpmd();
    const Node* parseSwitch();
    void rejectStatementsBeforeCase();
    const Node* parseCase();
    const Node* parseOtherwise();
    const Node* parseTry();
    const Node* parseCatch();
    bool isAtCaughtError() const;

    // Functions (FunctionParser.cpp).
    static bool haveFunctionsEnd(const std::vector<CodeToken>& codes);
    const Node* parseFunctionStatement();
    const Node* parseMethodDefinition();
    const Node* parseMethodDeclaration();
    template <class FunctionClass>
    const Node* parseFunction();
    void closeFunction();
    NodeList parseArgumentsBlocks(const Node* parent);
    template <class SignatureClass>
    void parseSignature(SignatureClass* node);

    // Classes (ClassParser.cpp).
    const Node* parseClass();
    void parseClassHead(lf::astapi::ClassDefinition<CA>* node);
    const Node* parseClassBlock();
    const Node* parseArgumentsBlock();
    template <class Block>
    const Node* parseMemberBlock(const Node* (Parser::*parseMember)());
    template <class ParseMember>
    void parseMembers(ParseMember parseMember);
    static bool mayHold(TokenType block, TokenType member);
    void skipMisplacedBlock();
    NodeList parseAttributes(const Node* parent);
    const Node* parseAttribute();
    const Node* parseMethod();
    const Node* parseEvent();
    const Node* parseEnumerationMember();
    const Node* parseProperty();
    const Node* parseArgumentDefinition();
    const Node* parseDefault(const Node* parent);
    const ValidationSpec* parseValidation(const Node* parent);

    std::u16string_view text;
    TokenCursor cursor;
    Arena& arena;
    SyntaxErrors& errors;

    std::vector<const Node*> pending;  ///< elements of the lists that are being read
    std::vector<const Node*> operands; ///< of the binary chains that are being read
    std::vector<Operator> operators;   ///< likewise
    std::vector<CodeToken> brackets;   ///< open ones, innermost last
    std::vector<OpenBlock> blocks;     ///< open ones, innermost last
    int depth = 0;
    int indexDepth = 0; ///< how many indexes are open around this place: `end` needs one
    bool blankSeparates = false;
    bool functionsHaveEnd = true;
    std::uint32_t lastFault = UINT32_MAX; ///< position of the last fault's token
};

} // namespace ca::syntax
