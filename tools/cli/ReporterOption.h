#pragma once

#include "diagnostics/Result.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace ombrel {

struct Arguments;

enum class ReporterKind { Human, Json, Github, Sarif, Gitlab, Junit, Checkstyle, Rdjson };

/// One --reporter of the command line.
struct ReporterChoice {
    ReporterKind kind;
    std::string file; ///< where the report goes; empty for standard output. Always empty for Human.
};

/// Adds --reporter, which appends to `choices`.
void addReporterOption(CLI::App& app, std::vector<ReporterChoice>& choices);

/// True if text for people is wanted. Only then there are summaries and progress.
bool hasHumanReporter(const Arguments& arguments);

/// True if the names of files that would change go to standard output.
bool printsNames(const Arguments& arguments);

/// Fails with a UsageError that says what to do if two things would go to standard output or to one file.
Result<void> checkReporters(const Arguments& arguments);

} // namespace ombrel
