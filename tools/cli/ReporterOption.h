#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace ombrel {

struct Arguments;

enum class ReporterKind { Human, Json, Github, Sarif };

/// One --reporter of the command line.
struct ReporterChoice {
    ReporterKind kind;
    std::string file; ///< where the report goes; empty for standard output. Always empty for Human.
};

/// Adds --reporter, which appends to `choices`.
void addReporterOption(CLI::App& app, std::vector<ReporterChoice>& choices);

/// True if there is text for people: summaries and progress have their place only then.
bool hasHumanReporter(const Arguments& arguments);

/// True if people want the names of files that would change on standard output.
bool printsNames(const Arguments& arguments);

/// A message that says what to do if two things want standard output or the same file; empty if none do.
std::string findReporterConflict(const Arguments& arguments);

} // namespace ombrel
