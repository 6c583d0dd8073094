#pragma once

#include "diagnostics/Problem.h"

#include <string>
#include <utility>

#include <tl/expected.hpp>

namespace ombrel {

/// What a function of the tools gives back if it can fail for reasons that a user has to know: the value, or
/// one problem or more. `Result<void>` is a check.
template <class T>
using Result = tl::expected<T, Problems>;

using Failure = tl::unexpected<Problems>;

inline Failure fail(Problems problems) {
    return Failure(std::move(problems));
}

inline Failure fail(Problem problem) {
    return Failure(Problems{std::move(problem)});
}

inline Failure fail(Code code, std::string text, std::uint32_t line = 0, std::uint32_t column = 0) {
    return fail(Problem(code, std::move(text), line, column));
}

} // namespace ombrel
