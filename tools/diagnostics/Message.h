#pragma once

#include "cli/ExitStatus.h"
#include "text/Color.h"
#include "text/Printable.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// Something that kept one input from being formatted or, if the status is Done, only a warning.
struct Problem {
    ExitStatus status;
    std::string text;         ///< UTF-8, one line, no full stop
    std::uint32_t line = 0;   ///< from 1; 0 if the problem has no place in the text
    std::uint32_t column = 0; ///< 16-bit characters, from 1

    bool isWarning() const { return status == ExitStatus::Done; }
};

/// A problem with the source line that it is about. Needs the source text no longer.
struct Message {
    Problem problem;
    Excerpt excerpt; ///< empty if the problem has no place
};

/// Problems of one text as messages, in the same order. If that is the order of lines, as it should be, this
/// takes time in proportion to the text, however many there are.
std::vector<Message> makeMessages(const std::vector<Problem>& problems, std::u16string_view text);

/// Writes a message as a person reads it:
///
///     sum.omb:2:5: error: this line would be indented by 4294967292 columns
///       x = 1;
///           ^
void printMessage(std::ostream& stream, std::string_view path, const Message& message, Color color);

/// The same for a problem and the input that it is in, or as much of that as could be read, even nothing.
void printProblem(std::ostream& stream, std::string_view path, const Problem& problem,
                  std::u16string_view text, Color color);

/// Writes an error that belongs to the command line and to no input.
void printUsageError(std::ostream& stream, std::string_view program, std::string_view text, Color color);

/// Writes that standard output takes no more. `errorNumber` says why; 0: nobody knows.
void printOutputFailure(std::ostream& stream, std::string_view program, int errorNumber, Color color);

} // namespace ombrel
