#pragma once

#include <string>
#include <variant>
#include <vector>

namespace resource_core {

/// Names a message of a catalog and holds what is put into its text. Words and language are the catalog's.
struct BaseMsgID {
    using Argument = std::variant<long, std::string, std::u16string>;

    std::vector<Argument> arguments;
    std::string catalog;
    std::string key;

    friend bool operator==(const BaseMsgID&, const BaseMsgID&) = default;
};

} // namespace resource_core
