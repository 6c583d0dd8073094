#pragma once

#include "diagnostics/Problem.h"
#include "text/Color.h"
#include "text/Printable.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// A problem with the source line that it is about. Needs the source text no longer.
struct Message {
    Problem problem;
    Excerpt excerpt; ///< empty if the problem has no place
};

/// Problems of one text as messages, in the same order. If that is the order of lines, as it should be, this
/// takes time in proportion to the text, however many there are.
std::vector<Message> makeMessages(const Problems& problems, std::u16string_view text);

/// Writes a message as a person reads it:
///
///     sum.omb:2:5: error: this line would be indented by 4294967292 columns [runaway-indentation]
///       x = 1;
///           ^
void printMessage(std::ostream& stream, std::string_view path, const Message& message, Color color);

/// The same for a problem and the input that it is in, or as much of that as could be read, even nothing.
void printProblem(std::ostream& stream, std::string_view path, const Problem& problem,
                  std::u16string_view text, Color color);

/// Writes a problem that belongs to the run as a whole and to no input.
void printRunProblem(std::ostream& stream, std::string_view program, const Problem& problem, Color color);

/// Writes that standard output can't be written. `errorNumber` is the reason, 0 if it isn't known.
void printOutputFailure(std::ostream& stream, std::string_view program, int errorNumber, Color color);

} // namespace ombrel
