#include "cli/Summary.h"

#include <fmt/format.h>

namespace ombrel {

std::string groupDigits(std::size_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t i = digits.size(); i > 3; i -= 3) {
        digits.insert(i - 3, 1, ',');
    }
    return digits;
}

void Summary::count(ExitStatus status, bool isChanged) {
    ++total;
    if (status == ExitStatus::Unparsable) {
        ++unparsable;
    } else if (status > ExitStatus::WouldChange) {
        ++failed;
    } else if (isChanged) {
        ++changed;
    }
}

std::string Summary::getSentence(const Arguments& arguments) const {
    const std::size_t failures = arguments.checkSyntax ? failed : failed + unparsable;
    const std::size_t named = arguments.checkSyntax ? unparsable : changed;
    const char* verb = arguments.checkSyntax ? (named == 1 ? "doesn't parse" : "don't parse")
                       : arguments.inPlace   ? "formatted"
                                             : "would change";
    return fmt::format("{} of {} {} {}{}", groupDigits(named), groupDigits(total),
                       total == 1 ? "file" : "files", verb,
                       failures == 0 ? "" : fmt::format(", {} failed", groupDigits(failures)));
}

} // namespace ombrel
