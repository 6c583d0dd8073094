#pragma once

#include "diagnostics/Problem.h"
#include "lsp/Feature.h"

#include <vector>

namespace ombrel::lsp {

struct PlacedProblem {
    TextSpan span;
    Problem problem;
};

/// What is wrong with an options file, as it is in the editor.
std::vector<PlacedProblem> findOptionsProblems(const Question& question);

/// The diagnostics of a document, in the order of the text:
///
/// - of a source: syntax errors, suppression comments without effect, and that options files that apply to it
///   are wrong or values of .editorconfig files are ignored, placed at the start, with the first fault or the
///   value as related information;
/// - of an options file: everything that is wrong with it, as it is in the editor.
Json makeDiagnostics(const Question& question);

/// textDocument/diagnostic: a full report, or that nothing has changed since the client's last one.
Json reportDiagnostics(const Question& question);

} // namespace ombrel::lsp
