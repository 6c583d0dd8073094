#pragma once

#include <string>

namespace ombrel {

/// Why a request gets no answer of its own: a status of HTTP and a sentence for people.
struct Refusal {
    int status;
    std::string text;
};

} // namespace ombrel
