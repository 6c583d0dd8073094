#pragma once

#include "ombrel/api.h"

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

namespace ca {

/// One fault of a text that doesn't parse.
struct SyntaxError {
    std::u16string identifier; ///< stable and short, for tools: "UnclosedBlock"
    std::u16string message;    ///< for people, one line, no full stop
    std::uint32_t line;        ///< where the fault was noticed, from 1
    std::uint32_t column;      ///< 16-bit characters, from 1
    std::uint32_t length;      ///< of the text at fault on that line, in 16-bit characters; 0 at a line's end
};

/// Thrown when a text doesn't parse. Holds all its faults in the order of the text, at least one and at most
/// 100.
class OMBREL_HOST_API SyntaxErrorException : public std::exception {
public:
    explicit SyntaxErrorException(std::vector<SyntaxError> errors);

    const std::vector<SyntaxError>& getErrors() const noexcept { return errors; }
    const char* what() const noexcept override;

private:
    std::vector<SyntaxError> errors;
};

} // namespace ca
