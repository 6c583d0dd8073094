#include "parser/OperatorClass.h"

#include <iterator>

namespace ca::formatting {

OperatorClass getOperatorClass(std::int32_t operatorNumber) {
    using ContainerKind = FormattingConfig::ContainerKind;
    static constexpr OperatorClass plusMinus{3, ContainerKind::PlusMinus};
    static constexpr OperatorClass multiplyDivide{2, ContainerKind::MultiplyDivide};
    static constexpr OperatorClass exponent{1, ContainerKind::Exponent};
    static constexpr OperatorClass comparison{4, ContainerKind::Comparison};
    static constexpr OperatorClass classes[] = {
        plusMinus,                   //  +
        plusMinus,                   //  -
        multiplyDivide,              //  *
        multiplyDivide,              //  /
        multiplyDivide,              //  backslash
        exponent,                    //  ^
        multiplyDivide,              //  .*
        multiplyDivide,              //  ./
        multiplyDivide,              //  . and backslash
        exponent,                    //  .^
        comparison,                  //  ==
        comparison,                  //  ~=
        comparison,                  //  <
        comparison,                  //  <=
        comparison,                  //  >
        comparison,                  //  >=
        {7, ContainerKind::Logical}, //  &&
        {5, ContainerKind::Logical}, //  &
        {8, ContainerKind::Logical}, //  ||
        {6, ContainerKind::Logical}, //  |
        {0, ContainerKind::None},    //  @ between two names
    };
    const bool isKnown = operatorNumber >= 0 && operatorNumber < std::ssize(classes);
    return isKnown ? classes[operatorNumber] : OperatorClass{9, ContainerKind::Logical};
}

bool isPrefixOperation(std::int32_t operatorNumber) {
    switch (operatorNumber) {
    case 0:
    case 1:
    case 4:
    case 5:
    case 6:
        return true;
    default:
        return false;
    }
}

} // namespace ca::formatting
