#include "Listings.h"

#include <exception>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace {

void replaceAll(std::string& text, std::string_view word, std::string_view replacement) {
    for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += replacement.size()) {
        text.replace(at, word.size(), replacement);
    }
}

} // namespace

/// Copies a template of a manual or of a completion script from standard input to standard output, with the
/// listings of the options in place of their names, such as @bash-values@.
int main() {
    try {
        std::string text(std::istreambuf_iterator<char>(std::cin), {});
        for (const auto& [name, makeListing] : ombrel::getListings()) {
            replaceAll(text, '@' + std::string(name) + '@', makeListing());
        }
        std::cout << text << std::flush;
        return std::cout ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "ombrel-fill: " << error.what() << '\n';
        return 1;
    }
}
