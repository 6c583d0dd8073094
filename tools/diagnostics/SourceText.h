#pragma once

#include "diagnostics/Result.h"
#include "text/TextEncoding.h"

#include <string_view>

namespace ombrel {

/// Turns the bytes of a file into text, as decode() does. Fails with what is wrong with them.
Result<DecodedText> decodeSource(std::string_view bytes);

} // namespace ombrel
