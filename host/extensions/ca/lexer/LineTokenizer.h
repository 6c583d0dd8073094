#pragma once

#include <ca/lexer/TokenSpan.h>

#include <memory>
#include <span>
#include <string>

namespace ca::lexer {

class Lexer;

/// Delivers the tokens of lex() a line at a time, for callers who need few of them: it costs neither a list
/// of all tokens nor a copy of their text.
///
/// One object reads one text once, on one thread.
class OMBREL_HOST_API LineTokenizer {
public:
    /// The text has to outlive the tokenizer. Throws std::bad_alloc for one of 4 Gi characters or more.
    explicit LineTokenizer(const std::u16string& text);
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
