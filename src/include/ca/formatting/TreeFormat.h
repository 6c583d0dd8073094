#pragma once

#include <ca/Analyzer.h>
#include <ca/SyntaxError.h>
#include <ca/config/Config.h>
#include <ca/config/ConfigIssue.h>
#include <ca/lexer/Token.h>
#include <ca/lexer/lex.h>

#include <cstddef>
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
    std::shared_ptr<const Tokens> tokens;               ///< of the whole text; null if nobody asked for it
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

/// Parses a text, without a list of its tokens. Throws what the host throws for other reasons than syntax
/// errors, std::bad_alloc above all.
inline ParsedSource parseProgram(const std::u16string& text) {
    ParsedSource source;
    try {
        source.analysis = ca::createSingleFileAnalyzer()->parseSourceCode(text);
    } catch (const ca::SyntaxErrorException& exception) {
        source.errors = exception.getErrors();
    }
    return source;
}

/// Parses and tokenizes a text.
inline ParsedSource parseSource(const std::u16string& text) {
    ParsedSource source = parseProgram(text);
    source.tokens = source.analysis != nullptr ? getTokens(*source.analysis, text)
                                               : std::make_shared<const Tokens>(ca::lexer::lex(text));
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

/// Delivers the tokens of a text in order, for whoever never needs all at once.
class TokenReader {
public:
    virtual ~TokenReader() = default;

    /// Appends those that are left up to the token at this position in the text, or up to the end of the
    /// text. Counts 16-bit characters from 0.
    virtual void read(std::size_t position, Tokens& tokens) = 0;
};

/// One text to format. The tree formatter reads source and configuration and keeps neither.
struct TreeFormatRequest {
    /// Its tokens are needed unless there is a reader. Throws std::invalid_argument if there is neither.
    const ParsedSource& source;
    /// Has to have a JSON, factory, legacy or preference source. Its options are read when it is used for
    /// the first time; after that any number of requests, on any threads, may share it.
    std::shared_ptr<const ca::config::Config> config;
    CommentLines commentLines = CommentLines::AsWritten;
    /// If there is one, a long text takes little more memory for its formatting than its longest statement of
    /// the outermost level. It has read nothing yet, and all is read when the text has been formatted.
    TokenReader* reader = nullptr;
};

/// The formatted text, or every syntax error of the source, or every issue of the configuration and of its
/// formatting section, warnings too, in the order of their places. Never an empty list.
using TreeFormatResult =
    std::variant<std::u16string, std::vector<ca::SyntaxError>, std::vector<ca::config::ConfigIssue>>;

} // namespace ca::formatting
