#include "diagnostics/SourceText.h"

namespace ombrel {

namespace {

Code getCode(DecodingError::Kind kind) {
    switch (kind) {
    case DecodingError::Kind::NotUtf8:
        return Code::NotUtf8;
    case DecodingError::Kind::NulCharacter:
        return Code::NulCharacter;
    case DecodingError::Kind::TooLarge:
        break;
    }
    return Code::TooLarge;
}

} // namespace

Result<DecodedText> decodeSource(std::string_view bytes) {
    return decode(bytes).map_error([](const DecodingError& error) {
        return Problems{{getCode(error.kind), error.text, error.line, error.column}};
    });
}

} // namespace ombrel
