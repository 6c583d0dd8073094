#pragma once

#include "AssignedNames.h"
#include "ca/lexer/KeywordTypes.h"
#include "ca/lexer/Token.h"

#include <string_view>
#include <vector>

namespace ca::lexer {

/// Finds the names that a program assigns, token by token: targets of assignments, outputs and inputs of
/// functions, loop variables, caught errors, global and persistent names. They decide whether `a -b` is a
/// command.
///
/// Each function has names of its own, and so has the script around the functions. Since it follows the heads
/// of functions for their inputs and outputs, it also knows whether a head is complete.
class AssignmentTracker {
public:
    /// Passes the next token of code. `depth` is the number of brackets open around it, a bracket itself not
    /// counted; `startsStatement` says that a statement may start with it.
    void take(TokenType type, std::u16string_view lexeme, std::size_t depth, bool startsStatement) {
        if (phase != Phase::Idle || startsStatement || startsPhase(type)) {
            advance(type, lexeme, depth, startsStatement);
        }
        previous = type;
    }

    /// A member of a class or of one of its blocks starts: it has no targets, whatever it looks like.
    void startMember() { phase = Phase::Idle; }

    /// The next name is the error that a `catch` names.
    void expectCaughtName() { phase = Phase::SingleName; }

    /// After a function's `end`: back to the names of what is around it.
    void leaveFunction();

    bool isAssigned(std::u16string_view name) { return names.contains(name); }

    /// True between a function's name and the next code. A `(` that is the next code opens the inputs,
    /// on a later line too.
    bool awaitsInputs() const { return phase == Phase::FirstHeadName || phase == Phase::FunctionName; }

    /// True between the `=` of a function's outputs and the code after its name.
    bool isAfterOutputs() const { return phase == Phase::FunctionName; }

private:
    enum class Phase {
        Idle,          ///< nothing that comes can be a target
        Target,        ///< in a statement that started with a name
        TargetList,    ///< inside the [ that a statement started with
        ListClosed,    ///< after its ]
        SingleName,    ///< before a loop variable or a caught error
        Declaration,   ///< after global or persistent
        FunctionHead,  ///< after function
        FirstHeadName, ///< after a name that is the output or the function's own
        Outputs,       ///< inside the brackets of the outputs, or after them
        FunctionName,  ///< after the = of the outputs
        Inputs,        ///< inside the parentheses of the inputs
    };

    /// The keywords whose names are assigned wherever they are.
    static bool startsPhase(TokenType type) {
        return type == TokenType::Function || type == keyword::For || type == keyword::Parfor ||
               type == TokenType::Global || type == TokenType::Persistent;
    }

    void advance(TokenType type, std::u16string_view lexeme, std::size_t depth, bool startsStatement);
    Phase startStatement(TokenType type, std::u16string_view lexeme);
    Phase getNextPhase(TokenType type, std::u16string_view lexeme, std::size_t depth);
    Phase takeSingleName(TokenType type, std::u16string_view lexeme);
    Phase takeInputToken(TokenType type, std::u16string_view lexeme, std::size_t depth);
    Phase takeTargetToken(TokenType type, std::size_t depth);
    Phase takeListToken(TokenType type, std::u16string_view lexeme, std::size_t depth);
    Phase takeHeadToken(TokenType type, std::u16string_view lexeme);
    Phase assignTargets();
    Phase assign(std::u16string_view name, Phase next);

    Phase phase = Phase::Idle;
    TokenType previous = TokenType::EndOfInput; ///< token of code
    std::vector<std::u16string_view> targets;   ///< of this statement, if it turns out to be an assignment
    AssignedNames names;
};

} // namespace ca::lexer
