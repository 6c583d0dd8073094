#include "diagnostics/SourceText.h"

namespace ombrel {

Result<DecodedText> decodeSource(std::string_view bytes) {
    return decode(bytes).map_error([](const DecodingError& error) {
        const bool isEncoding = error.kind == DecodingError::Kind::NotUtf8;
        return Problems{{isEncoding ? Code::NotUtf8 : Code::TooLarge, error.text, error.line, error.column}};
    });
}

} // namespace ombrel
