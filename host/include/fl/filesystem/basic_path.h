#pragma once

#include <string>
#include <utility>

namespace fl::filesystem {

/// A path in a file system, kept as text. `Native` is the character type of the operating system's paths,
/// `Char` the one that the text is in.
template <class Native, class Char>
class basic_path {
public:
    basic_path() = default;
    explicit basic_path(std::basic_string<Char> text) : text(std::move(text)) {}

    const std::basic_string<Char>& string() const { return text; }

    friend bool operator==(const basic_path&, const basic_path&) = default;

private:
    std::basic_string<Char> text;
};

using path = basic_path<char, char16_t>;

} // namespace fl::filesystem
