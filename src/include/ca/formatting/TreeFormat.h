#pragma once

#include <ca/Analyzer.h>
#include <ca/SyntaxError.h>
#include <ca/config/Config.h>
#include <ca/config/ConfigIssue.h>
#include <ca/lexer/Token.h>
#include <ca/lexer/lex.h>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

// What goes into the tree formatter and what comes out of it, as values: for our own tools, which reach the
// formatter through the companion library. Nothing in here needs the formatter's library to be linked.

namespace ca::formatting {

using Tokens = std::vector<ca::lexer::Token>;

/// A text as the host's parser sees it: its tokens, and either a syntax tree or syntax errors.
/// Nothing changes it once it is made, so any number of threads may share it.
struct ParsedSource {
    std::shared_ptr<const ca::AnalysisResult> analysis; ///< null if the text doesn't parse
    std::shared_ptr<const Tokens> tokens;               ///< of the whole text, whether it parses or not
    std::vector<ca::SyntaxError> errors;                ///< empty if the text parses
};

/// The tokens of a text that was analyzed: those that the analysis kept, or else the text's, tokenized again.
/// A host may have no operation for that at all.
template <class Analysis>
std::shared_ptr<const Tokens> getTokens(const Analysis& analysis, const std::u16string& text) {
    if constexpr (requires { analysis.getTokens(); }) {
        if (std::shared_ptr<const Tokens> tokens = analysis.getTokens()) {
            return tokens;
        }
    }
    return std::make_shared<const Tokens>(ca::lexer::lex(text));
}

/// Parses and tokenizes a text. Throws what the host throws for other reasons than syntax errors,
/// std::bad_alloc above all.
inline ParsedSource parseSource(const std::u16string& text) {
    ParsedSource source;
    try {
        source.analysis = ca::createSingleFileAnalyzer()->parseSourceCode(text);
        source.tokens = getTokens(*source.analysis, text);
    } catch (const ca::SyntaxErrorException& exception) {
        source.errors = exception.getErrors();
        source.tokens = std::make_shared<const Tokens>(ca::lexer::lex(text));
    }
    return source;
}

/// What becomes of the whitespace before comments that have a line of their own.
enum class CommentLines : std::uint8_t {
    /// Printed as it is in the source, and the level's indentation before it if that is enabled, so that an
    /// indented comment moves right each time that its file is formatted.
    AsWritten,
    /// Replaced by the level's indentation if that is enabled. The inner lines of a block comment move along
    /// with its opening line, and so does a comment directly after a block comment, which has no line start
    /// that the formatter could indent:
    ///
    ///     if a                      if a
    ///       %{                          %{
    ///         why                         why
    ///       %}                          %}
    ///      % and how                    % and how
    ///     end                       end
    ///
    /// A line of a block comment that doesn't begin with the whitespace of the opening line stays where it
    /// is.
    /// Each line of a block comment ends in one LF, whatever its end is in the source.
    Aligned,
};

/// One text to format. The tree formatter reads source and configuration and keeps neither.
struct TreeFormatRequest {
    const ParsedSource& source;
    /// Has to have a JSON, factory, legacy or preference source. Its options are read when it is used for
    /// the first time; after that any number of requests, on any threads, may share it.
    std::shared_ptr<const ca::config::Config> config;
    CommentLines commentLines = CommentLines::AsWritten;
};

/// The formatted text, or every syntax error of the source, or every issue of the configuration and of its
/// formatting section, warnings too, in the order of their places. Never an empty list.
using TreeFormatResult =
    std::variant<std::u16string, std::vector<ca::SyntaxError>, std::vector<ca::config::ConfigIssue>>;

} // namespace ca::formatting
