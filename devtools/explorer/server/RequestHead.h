#pragma once

#include "explorer/server/Refusal.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace ombrel {

/// Bytes that the head of a request may have, the empty line after it included.
constexpr std::size_t maximalHeadLength = 16 * 1024;

/// Bytes that the body of a request may have.
constexpr std::size_t maximalBodyLength = std::size_t{4} << 20;

/// The request line and the header fields of an HTTP request.
struct RequestHead {
    struct Field {
        std::string name; ///< in lower case
        std::string value;
    };

    std::string method;
    std::string target; ///< as it was sent, starts with a slash
    std::vector<Field> fields;
    std::size_t bodyLength = 0;
    bool isKeptAlive = true; ///< the client may send more requests on this connection

    /// How many fields have this name, in lower case.
    std::size_t count(std::string_view name) const;

    /// The value of the first one; empty if there is none.
    std::string_view get(std::string_view name) const;
};

/// Reads a head up to and with its empty line. Stricter than HTTP has to be, so that nothing about a request
/// can be understood in two ways: every line ends in CR LF, a field is on one line, a body has one
/// Content-Length and no other framing, and the target is a path.
tl::expected<RequestHead, Refusal> parseHead(std::string_view bytes);

} // namespace ombrel
