#include "lsp/Uri.h"

#include <cctype>
#include <charconv>
#include <filesystem>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

constexpr std::string_view scheme = "file://";

/// The byte that a `%41` at the start of the text stands for.
std::optional<char> readEscape(std::string_view text) {
    if (text.size() < 3 || text[0] != '%') {
        return std::nullopt;
    }
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + 3, value, 16);
    return error == std::errc() && end == text.data() + 3 ? std::optional(static_cast<char>(value))
                                                          : std::nullopt;
}

std::string decode(std::string_view text) {
    std::string decoded;
    while (!text.empty()) {
        const auto byte = readEscape(text);
        decoded += byte.value_or(text.front());
        text.remove_prefix(byte ? 3 : 1);
    }
    return decoded;
}

} // namespace

std::optional<std::string> getPath(std::string_view uri) {
    if (!uri.starts_with(scheme)) {
        return std::nullopt;
    }
    uri.remove_prefix(scheme.size());
    const std::string_view host = uri.substr(0, uri.find('/'));
    if (host.size() == uri.size() || (!host.empty() && host != "localhost")) {
        return std::nullopt;
    }
    uri.remove_prefix(host.size());
    const std::string path = decode(uri.substr(0, uri.find_first_of("?#")));
    if (path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return std::filesystem::path(path).lexically_normal().string();
}

std::string makeUri(std::string_view path) {
    constexpr std::string_view plain = "/-._~";
    std::string uri(scheme);
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x80 && std::isalnum(byte) != 0) || plain.find(c) != std::string_view::npos) {
            uri += c;
        } else {
            uri += fmt::format("%{:02X}", byte);
        }
    }
    return uri;
}

} // namespace ombrel::lsp
