// A host of the formatter library: reindents a file named on the command line, or a text of its own, and
// prints the result as UTF-8.
#include <ca/formatting/ca_format.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <locale>
#include <stdexcept>
#include <string>

using Utf8 = std::codecvt<char16_t, char8_t, std::mbstate_t>;

static std::u16string decode(const std::string& bytes) {
    const auto* first = reinterpret_cast<const char8_t*>(bytes.data());
    std::u16string text(bytes.size(), u'\0'); // never more 16-bit characters than bytes
    std::mbstate_t state{};
    char16_t* end = text.data();
    if (std::use_facet<Utf8>(std::locale::classic())
            .in(state, first, first + bytes.size(), first, text.data(), text.data() + text.size(), end) !=
        Utf8::ok) {
        throw std::runtime_error("the file is not UTF-8");
    }
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

static std::string encode(const char16_t* first, std::size_t size) {
    std::u8string bytes(3 * size, u8'\0'); // no 16-bit character needs more than three bytes
    std::mbstate_t state{};
    char8_t* end = bytes.data();
    std::use_facet<Utf8>(std::locale::classic())
        .out(state, first, first + size, first, bytes.data(), bytes.data() + bytes.size(), end);
    return {bytes.data(), end};
}

static std::string read(const char* path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(std::string("can't open ") + path);
    }
    return {std::istreambuf_iterator<char>(file), {}}; // throws if the reading fails, as for a folder
}

int main(int argc, char** argv) try {
    std::u16string text = u"function y = clamp(x, low, high)\nif x < low\ny = low;   % too small\n"
                          u"elseif x > high\n\t\ty = high;\nelse\n      y = x;\nend\nend\n";
    if (argc > 1) {
        text = decode(read(argv[1]));
    }
    const auto result = ca_format(text, 1, std::numeric_limits<unsigned int>::max(), true, 4,
                                  u"AllFunctionIndent", 4, u"Trim");
    const std::size_t size = result->dimensions[1]; // one row, a column for each character
    std::cout << encode(static_cast<const char16_t*>(result->data), size) << std::flush;
    return std::cout ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << "embed: " << error.what() << '\n';
    return 1;
}
