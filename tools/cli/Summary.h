#pragma once

#include "cli/Arguments.h"
#include "cli/ExitStatus.h"

#include <cstddef>
#include <string>

namespace ombrel {

/// 2140 as "2,140".
std::string groupDigits(std::size_t number);

/// Counts how the inputs of a run ended.
class Summary {
public:
    void count(ExitStatus status, bool isChanged);

    std::size_t getTotal() const { return total; }

    /// One line for a person, such as "3 of 2,140 files would change, 1 failed". Inputs that failed count in
    /// the total, but never as changed.
    std::string getSentence(const Arguments& arguments) const;

private:
    std::size_t total = 0;
    std::size_t changed = 0;
    std::size_t unparsable = 0;
    std::size_t failed = 0; ///< for any other reason than that they don't parse
};

} // namespace ombrel
