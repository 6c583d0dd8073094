// A state machine over the tokens of code. A statement that starts like a target is one only if its `=`
// comes:
//
//     x(1).y = 2       Target up to the `=`, then x is assigned
//     x(1) + 2         Target up to the `+`, then nothing is assigned
//     [a, ~] = f       TargetList, ListClosed, then a is assigned

#include "AssignmentTracker.h"

#include "ca/lexer/KeywordTypes.h"

namespace ca::lexer {

namespace {

bool isName(TokenType type) {
    return type == TokenType::NameToken27 || type == TokenType::NameToken28;
}

/// What a target such as x(1).y{2} may have outside brackets.
bool isPartOfTarget(TokenType type) {
    switch (type) {
    case TokenType::NameToken27:
    case TokenType::NameToken28:
    case TokenType::Dot:
    case TokenType::OpenParenthesis:
    case TokenType::CloseParenthesis:
    case TokenType::OpenBrace:
    case TokenType::CloseBrace:
        return true;
    default:
        return false;
    }
}

} // namespace

void AssignmentTracker::leaveFunction() {
    if (names.isInFunction()) {
        names.leaveFunction();
    }
}

void AssignmentTracker::advance(TokenType type, std::u16string_view lexeme, std::size_t depth,
                                bool startsStatement) {
    const bool opensInputs = awaitsInputs() && type == TokenType::OpenParenthesis;
    if (type == TokenType::Function) {
        names.enterFunction();
        phase = Phase::FunctionHead;
    } else if (type == keyword::For || type == keyword::Parfor) {
        phase = Phase::SingleName;
    } else if (type == TokenType::Global || type == TokenType::Persistent) {
        phase = Phase::Declaration;
    } else if (startsStatement && !opensInputs) {
        phase = startStatement(type, lexeme);
    } else {
        phase = getNextPhase(type, lexeme, depth);
    }
}

AssignmentTracker::Phase AssignmentTracker::startStatement(TokenType type, std::u16string_view lexeme) {
    targets.clear();
    if (isName(type)) {
        targets.push_back(lexeme);
        return Phase::Target;
    }
    return type == TokenType::OpenSquareBracket ? Phase::TargetList : Phase::Idle;
}

AssignmentTracker::Phase AssignmentTracker::getNextPhase(TokenType type, std::u16string_view lexeme,
                                                         std::size_t depth) {
    switch (phase) {
    case Phase::Idle:
        return Phase::Idle;
    case Phase::Target:
        return takeTargetToken(type, depth);
    case Phase::TargetList:
        return takeListToken(type, lexeme, depth);
    case Phase::ListClosed:
        return type == TokenType::Assign ? assignTargets() : Phase::Idle;
    case Phase::SingleName:
        return takeSingleName(type, lexeme);
    case Phase::Declaration:
        return isName(type) ? assign(lexeme, Phase::Declaration) : Phase::Idle;
    case Phase::Inputs:
        return takeInputToken(type, lexeme, depth);
    default:
        return takeHeadToken(type, lexeme);
    }
}

/// A loop variable, in parentheses or not, or a caught error.
AssignmentTracker::Phase AssignmentTracker::takeSingleName(TokenType type, std::u16string_view lexeme) {
    if (isName(type)) {
        return assign(lexeme, Phase::Idle);
    }
    return type == TokenType::OpenParenthesis ? Phase::SingleName : Phase::Idle;
}

AssignmentTracker::Phase AssignmentTracker::takeInputToken(TokenType type, std::u16string_view lexeme,
                                                           std::size_t depth) {
    if (isName(type)) {
        return assign(lexeme, Phase::Inputs);
    }
    return depth == 0 ? Phase::Idle : Phase::Inputs;
}

AssignmentTracker::Phase AssignmentTracker::takeTargetToken(TokenType type, std::size_t depth) {
    if (depth > 0) {
        return Phase::Target;
    }
    if (type == TokenType::Assign) {
        return assignTargets();
    }
    return isPartOfTarget(type) ? Phase::Target : Phase::Idle;
}

AssignmentTracker::Phase AssignmentTracker::takeListToken(TokenType type, std::u16string_view lexeme,
                                                          std::size_t depth) {
    if (depth == 0 && type == TokenType::CloseSquareBracket) {
        return Phase::ListClosed;
    }
    if (depth == 1 && isName(type) && previous != TokenType::Dot) {
        targets.push_back(lexeme);
    }
    return Phase::TargetList;
}

/// The head of a function up to its inputs: function [a, b] = name(…), function a = name(…), function
/// name(…).
AssignmentTracker::Phase AssignmentTracker::takeHeadToken(TokenType type, std::u16string_view lexeme) {
    if (type == TokenType::OpenParenthesis && awaitsInputs()) {
        return Phase::Inputs;
    }
    switch (phase) {
    case Phase::FunctionHead:
        if (isName(type)) {
            targets.assign(1, lexeme);
            return Phase::FirstHeadName;
        }
        return type == TokenType::OpenSquareBracket ? Phase::Outputs : Phase::Idle;
    case Phase::FirstHeadName:
        if (type == TokenType::Assign) {
            return assign(targets.front(), Phase::FunctionName);
        }
        return type == TokenType::Dot || isName(type) ? Phase::FirstHeadName : Phase::Idle;
    case Phase::Outputs:
        if (type == TokenType::Assign) {
            return Phase::FunctionName;
        }
        return isName(type) ? assign(lexeme, Phase::Outputs) : Phase::Outputs;
    default:
        return type == TokenType::Dot || isName(type) ? Phase::FunctionName : Phase::Idle;
    }
}

AssignmentTracker::Phase AssignmentTracker::assignTargets() {
    for (const std::u16string_view target : targets) {
        names.add(target);
    }
    return Phase::Idle;
}

AssignmentTracker::Phase AssignmentTracker::assign(std::u16string_view name, Phase next) {
    names.add(name);
    return next;
}

} // namespace ca::lexer
