#include "reports/XmlText.h"

#include "text/Printable.h"
#include "text/TextEncoding.h"

#include <fmt/format.h>

namespace ombrel {

namespace {

std::u16string escapeCharacter(char16_t c) {
    switch (c) {
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'"':
        return u"&quot;";
    case u'\n':
        return u"&#10;";
    case u'\r':
        return u"&#13;";
    case u'\t':
        return u"&#9;";
    default:
        return {c < u' ' || c >= 0xFFFE ? u'\uFFFD' : c};
    }
}

} // namespace

std::string escapeXml(std::string_view text) {
    std::u16string escaped;
    for (const char16_t c : decodeLossy(text)) {
        escaped += escapeCharacter(c);
    }
    return escapeHiddenInXml(encodeLossy(escaped));
}

} // namespace ombrel
