#include "diagnostics/Message.h"

#include "text/LineSplitter.h"

#include <ostream>
#include <system_error>

#include <fmt/format.h>

namespace ombrel {

namespace {

std::string paint(const std::string& text, std::string_view code, Color color) {
    return color == Color::On ? fmt::format("\033[{}m{}\033[0m", code, text) : text;
}

/// The word with a colon, in the color that compilers use.
std::string getWord(Severity severity, Color color) {
    constexpr SeverityWords codes{.note = "1;36", .warning = "1;35", .error = "1;31"};
    return paint(fmt::format("{}:", ombrel::getWord(severity)), codes.get(severity), color);
}

/// Finds lines by their numbers; going forward takes time in proportion to the distance.
class LineFinder {
public:
    explicit LineFinder(std::u16string_view text) : text(text), lines(text) {}

    /// The line's text without its end; empty if there is no such line.
    std::u16string_view find(std::uint32_t wanted) {
        if (wanted < number) {
            *this = LineFinder(text);
        }
        for (; number < wanted; ++number) {
            const auto line = lines.getNext();
            content = line ? line->content : std::u16string_view();
        }
        return content;
    }

private:
    std::u16string_view text;
    LineSplitter lines;
    std::u16string_view content; ///< of the line with this number
    std::uint32_t number = 0;
};

} // namespace

std::vector<Message> makeMessages(const Problems& problems, std::u16string_view text) {
    std::vector<Message> messages;
    messages.reserve(problems.size());
    LineFinder lines(text);
    for (const Problem& problem : problems) {
        const bool hasPlace = problem.line != 0;
        messages.push_back(
            {problem, hasPlace ? makeExcerpt(lines.find(problem.line), problem.column) : Excerpt()});
    }
    return messages;
}

void printMessage(std::ostream& stream, std::string_view path, const Message& message, Color color) {
    const auto& [problem, excerpt] = message;
    const std::string place =
        problem.line == 0 ? std::string() : fmt::format("{}:{}:", problem.line, problem.column);
    stream << getPrintableName(path) << ':' << place << ' ' << getWord(problem.severity, color) << ' '
           << problem.text << " [" << getInfo(problem.code).name << "]\n";
    if (!excerpt.text.empty()) {
        stream << "  " << excerpt.text << "\n  " << excerpt.padding << paint("^", "1;32", color) << '\n';
    }
}

void printProblem(std::ostream& stream, std::string_view path, const Problem& problem,
                  std::u16string_view text, Color color) {
    printMessage(stream, path, makeMessages(Problems{problem}, text).front(), color);
}

void printRunProblem(std::ostream& stream, std::string_view program, const Problem& problem, Color color) {
    stream << program << ": " << getWord(problem.severity, color) << ' ' << problem.text << " ["
           << getInfo(problem.code).name << "]\n";
}

void printOutputFailure(std::ostream& stream, std::string_view program, int errorNumber, Color color) {
    const std::string reason = errorNumber == 0 ? "" : ": " + std::generic_category().message(errorNumber);
    printRunProblem(stream, program, {Code::WriteFailed, "can't write standard output" + reason}, color);
}

} // namespace ombrel
