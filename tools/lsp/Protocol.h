#pragma once

#include <stdexcept>
#include <string>

namespace ombrel::lsp {

/// The numbers of errors, as JSON-RPC and the protocol have them.
enum class ErrorCode {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestFailed = -32803,
    ContentModified = -32801,
    RequestCancelled = -32800,
};

/// Ends a request with an error. `what()` is a sentence for people.
class RequestError : public std::runtime_error {
public:
    RequestError(ErrorCode code, const std::string& text) : std::runtime_error(text), code(code) {}

    ErrorCode code;
};

} // namespace ombrel::lsp
