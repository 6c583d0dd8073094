#pragma once

#include "ombrel/api.h"

#include <iterator>
#include <locale>

// The standard library supplies no facets for 16-bit characters, and a stream without them loses everything
// after the first number without a sign. This header declares the ones that writing needs. Include it
// wherever such a stream is used: a facet is found by the address of its `id`, so each `id` may exist only
// once in a process, in the host.

/// Characters of 16 bits: what is ASCII is classified and mapped as in the classic locale, nothing else is
/// in any class, and narrowing it gives the default that the caller names.
template <>
class OMBREL_HOST_API std::ctype<char16_t> : public std::locale::facet, public std::ctype_base {
public:
    using char_type = char16_t;

    explicit ctype(std::size_t references = 0) : facet(references) {}

    bool is(mask wanted, char16_t c) const;
    const char16_t* is(const char16_t* first, const char16_t* last, mask* classes) const;
    const char16_t* scan_is(mask wanted, const char16_t* first, const char16_t* last) const;
    const char16_t* scan_not(mask unwanted, const char16_t* first, const char16_t* last) const;
    char16_t toupper(char16_t c) const;
    const char16_t* toupper(char16_t* first, const char16_t* last) const;
    char16_t tolower(char16_t c) const;
    const char16_t* tolower(char16_t* first, const char16_t* last) const;
    char16_t widen(char c) const;
    const char* widen(const char* first, const char* last, char16_t* out) const;
    char narrow(char16_t c, char otherwise) const;
    const char16_t* narrow(const char16_t* first, const char16_t* last, char otherwise, char* out) const;

    static std::locale::id id;

protected:
    ~ctype() override;
};

extern template std::locale::id std::num_put<char16_t, std::ostreambuf_iterator<char16_t>>::id;

namespace fl::i18n::facet {

/// The classic locale with facets for streams of 16-bit characters: numbers (decimal point, no grouping),
/// padding and narrow text can be written to them. Reading numbers is not supported. Lives forever.
OMBREL_HOST_API const std::locale& get_global_std_locale();

} // namespace fl::i18n::facet
