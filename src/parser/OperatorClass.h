#pragma once

#include "config/FormattingConfig.h"

#include <cstdint>

namespace ca::formatting {

/// What one binary operator has in common with others.
struct OperatorClass {
    int group; ///< a label: operators with the same one share a flat chain
    FormattingConfig::ContainerKind kind;
};

/// Of an operator by its number in the syntax tree. Numbers that no operator has are `Logical`, in a group of
/// their own.
OperatorClass getOperatorClass(std::int32_t operatorNumber);

/// Whether a unary operator is before its operand.
bool isPrefixOperation(std::int32_t operatorNumber);

} // namespace ca::formatting
