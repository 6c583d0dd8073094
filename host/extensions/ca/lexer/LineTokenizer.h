#pragma once

#include <ca/lexer/TokenSpan.h>

#include <memory>
#include <span>
#include <string>

namespace ca::lexer {

class Lexer;

/// Whether a caller wants to know of tokens of a type wherever they are in their line.
using TokenFilter = bool (*)(TokenType);

/// Delivers the tokens of lex() a line at a time, for callers who need few of them: it costs neither a list
/// of all tokens nor a copy of their text.
///
/// One object reads one text once, on one thread.
class OMBREL_HOST_API LineTokenizer {
public:
    /// The text has to outlive the tokenizer. Throws std::bad_alloc for one of 4 Gi characters or more.
    ///
    /// With a filter, a line of thousands of tokens comes without most of those that the filter is false for:
    /// their lengths are added to such a token before them. The first two and the last three tokens of a line
    /// are always there.
    explicit LineTokenizer(const std::u16string& text, TokenFilter filter = nullptr);
    ~LineTokenizer();
    LineTokenizer(const LineTokenizer&) = delete;
    LineTokenizer& operator=(const LineTokenizer&) = delete;

    /// The tokens of the next line with its line end, or with the end of the text, which ends the last line;
    /// after that, nothing. Valid until the next call. A text that ends in a line end has a last line that
    /// holds only `EndOfInput`. Throws std::bad_alloc and nothing else.
    std::span<const TokenSpan> next();

private:
    std::unique_ptr<Lexer> lexer;
};

} // namespace ca::lexer
