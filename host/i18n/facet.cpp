#include "fl/i18n/facet.h"

#include <algorithm>
#include <sstream>
#include <string>

using Ctype16 = std::ctype<char16_t>;

std::locale::id Ctype16::id;

template std::locale::id std::num_put<char16_t, std::ostreambuf_iterator<char16_t>>::id;

namespace {

bool isAscii(char16_t c) {
    return c < 0x80;
}

const std::ctype<char>& getNarrowFacet() {
    return std::use_facet<std::ctype<char>>(std::locale::classic());
}

char16_t toWide(char c) {
    return static_cast<unsigned char>(c);
}

} // namespace

Ctype16::~ctype() = default;

bool Ctype16::is(mask wanted, char16_t c) const {
    return isAscii(c) && getNarrowFacet().is(wanted, static_cast<char>(c));
}

const char16_t* Ctype16::is(const char16_t* first, const char16_t* last, mask* classes) const {
    for (; first != last; ++first, ++classes) {
        const char c = narrow(*first, '\0');
        *classes = mask();
        if (isAscii(*first)) {
            getNarrowFacet().is(&c, &c + 1, classes);
        }
    }
    return last;
}

const char16_t* Ctype16::scan_is(mask wanted, const char16_t* first, const char16_t* last) const {
    return std::find_if(first, last, [&](char16_t c) { return is(wanted, c); });
}

const char16_t* Ctype16::scan_not(mask unwanted, const char16_t* first, const char16_t* last) const {
    return std::find_if_not(first, last, [&](char16_t c) { return is(unwanted, c); });
}

char16_t Ctype16::toupper(char16_t c) const {
    return u'a' <= c && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
}

const char16_t* Ctype16::toupper(char16_t* first, const char16_t* last) const {
    std::transform(static_cast<const char16_t*>(first), last, first,
                   [this](char16_t c) { return toupper(c); });
    return last;
}

char16_t Ctype16::tolower(char16_t c) const {
    return u'A' <= c && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

const char16_t* Ctype16::tolower(char16_t* first, const char16_t* last) const {
    std::transform(static_cast<const char16_t*>(first), last, first,
                   [this](char16_t c) { return tolower(c); });
    return last;
}

char16_t Ctype16::widen(char c) const {
    return toWide(c);
}

const char* Ctype16::widen(const char* first, const char* last, char16_t* out) const {
    std::transform(first, last, out, toWide);
    return last;
}

char Ctype16::narrow(char16_t c, char otherwise) const {
    return isAscii(c) ? static_cast<char>(c) : otherwise;
}

const char16_t* Ctype16::narrow(const char16_t* first, const char16_t* last, char otherwise,
                                char* out) const {
    std::transform(first, last, out, [&](char16_t c) { return narrow(c, otherwise); });
    return last;
}

namespace fl::i18n::facet {

namespace {

using Output = std::ostreambuf_iterator<char16_t>;

/// Has a number written as narrow text, all flags of the stream and its width included, and widens that. The
/// padding is left open with a character that no number has in it, since the stream's own may not be narrow.
class WideNumbers : public std::num_put<char16_t> {
protected:
    Output do_put(Output out, std::ios_base& io, char16_t fill, bool value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, long value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, unsigned long value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, long long value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, unsigned long long value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, double value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, long double value) const override {
        return putNarrow(out, io, fill, value);
    }
    Output do_put(Output out, std::ios_base& io, char16_t fill, const void* value) const override {
        return putNarrow(out, io, fill, value);
    }

private:
    class NarrowNumbers : public std::num_put<char, std::back_insert_iterator<std::string>> {};

    template <class Value>
    static Output putNarrow(Output out, std::ios_base& io, char16_t fill, Value value) {
        constexpr char padding = '\0';
        std::string text;
        NarrowNumbers().put(std::back_inserter(text), io, padding, value);
        return std::transform(text.begin(), text.end(), out,
                              [&](char c) { return c == padding ? fill : toWide(c); });
    }
};

/// The standard library keeps what it needs to format numbers in tables of the locale and its facets, which
/// the first use fills without a lock. They are filled here, before any other thread has the locale.
void fillTables(const std::locale& locale) {
    std::basic_ostringstream<char16_t> stream;
    stream.imbue(locale);
    stream << 0 << 0.0;
}

std::locale* makeLocale() {
    auto* locale = new std::locale(std::locale(std::locale::classic(), new Ctype16), new WideNumbers);
    fillTables(*locale);
    return locale;
}

} // namespace

const std::locale& get_global_std_locale() {
    static const auto& locale = *makeLocale();
    return locale;
}

} // namespace fl::i18n::facet
