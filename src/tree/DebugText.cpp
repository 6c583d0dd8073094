#include "tree/DebugText.h"

namespace ca::formatting {

std::basic_stringstream<char16_t> makeDebugStream() {
    std::basic_stringstream<char16_t> stream;
    stream.exceptions(std::ios::badbit); // where memory runs out, or the text would be cut
    stream.imbue(fl::i18n::facet::get_global_std_locale());
    return stream;
}

} // namespace ca::formatting
