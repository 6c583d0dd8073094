#pragma once

#include <string>
#include <string_view>

namespace ombrel::lsp {

/// Standard input and output as the protocol needs them. Once there is one, whatever else of this process
/// writes to standard output writes to standard error: nothing but messages goes to the client.
class Stream {
public:
    Stream();
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    /// What can be read now, after waiting for it; empty at the end of the stream.
    std::string read() const;

    /// Writes a message with its header. False if nobody reads it any more.
    bool write(std::string_view body) const;

private:
    int output; ///< a descriptor that nothing else knows
};

/// Ends this process, with status 1, within a second after another one has ended.
void endWithProcess(int processId);

} // namespace ombrel::lsp
