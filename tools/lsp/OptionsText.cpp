#include "lsp/OptionsText.h"

#include <algorithm>

namespace ombrel::lsp {

TextSpan findFaultyText(std::u16string_view text, std::size_t place) {
    const std::u16string_view rest = text.substr(place);
    if (rest.starts_with(u'"')) {
        std::size_t end = 1;
        while (end < rest.size() && rest[end] != u'"' && rest[end] != u'\n' && rest[end] != u'\r') {
            end += rest[end] == u'\\' ? 2 : 1;
        }
        return {place, place + std::min(end + 1, rest.size())};
    }
    const std::size_t end = std::min(rest.find_first_of(u" \t\r\n,:[]{}\""), rest.size());
    return {place, place + std::max<std::size_t>(end, rest.empty() ? 0 : 1)};
}

} // namespace ombrel::lsp
