#include "Message.h"

#include <ostream>

#include <fmt/format.h>

namespace ombrel {

namespace {

std::string paint(const char* text, const char* code, Color color) {
    return color == Color::On ? fmt::format("\033[{}m{}\033[0m", code, text) : text;
}

std::string getErrorWord(Color color) {
    return paint("error:", "1;31", color);
}

std::string getWord(const Problem& problem, Color color) {
    return problem.isWarning() ? paint("warning:", "1;35", color) : getErrorWord(color);
}

} // namespace

Message makeMessage(const Problem& problem, std::u16string_view text) {
    return {problem, problem.line == 0 ? Excerpt() : makeExcerpt(text, problem.line, problem.column)};
}

void printMessage(std::ostream& stream, std::string_view path, const Message& message, Color color) {
    const auto& [problem, excerpt] = message;
    const std::string place =
        problem.line == 0 ? std::string() : fmt::format("{}:{}:", problem.line, problem.column);
    stream << getPrintableName(path) << ':' << place << ' ' << getWord(problem, color) << ' ' << problem.text
           << '\n';
    if (!excerpt.text.empty()) {
        stream << "  " << excerpt.text << "\n  " << excerpt.padding << paint("^", "1;32", color) << '\n';
    }
}

void printProblem(std::ostream& stream, std::string_view path, const Problem& problem,
                  std::u16string_view text, Color color) {
    printMessage(stream, path, makeMessage(problem, text), color);
}

void printUsageError(std::ostream& stream, std::string_view program, std::string_view text, Color color) {
    stream << program << ": " << getErrorWord(color) << ' ' << text << '\n';
}

} // namespace ombrel
