#pragma once

#include "ombrel/api.h"

#include <optional>
#include <string>

namespace ca {

/// The code that an analyzer is to look at. Not needed once the parsing operation has returned.
class OMBREL_HOST_API CodeInput {
public:
    /// The text of one file, without a byte-order mark.
    static CodeInput createFromSourceCode(std::u16string sourceCode);

    /// The text, if this input was made from one.
    const std::optional<std::u16string>& getSourceCode() const { return sourceCode; }

private:
    CodeInput() = default;

    std::optional<std::u16string> fileName;
    std::optional<std::u16string> sourceCode;
};

} // namespace ca
