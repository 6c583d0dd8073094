#pragma once

#include <fl/i18n/facet.h>

#include <cstdint>
#include <sstream>

namespace ca::formatting {

/// A stream that numbers, padded cells and narrow text can be written to as 16-bit characters.
std::basic_stringstream<char16_t> makeDebugStream();

/// The place of something in the source as debug names show it, "_L12_C5". Line and column count from 1.
template <class Number>
void writePlace(std::basic_stringstream<char16_t>& stream, Number line, Number column) {
    stream << u"_L" << line << u"_C" << column;
}

} // namespace ca::formatting
