#include "explorer/server/Access.h"

#include <algorithm>
#include <array>
#include <system_error>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sys/random.h>

namespace ombrel {

namespace {

constexpr std::string_view scheme = "http://";
constexpr std::uint16_t defaultPort = 80;
constexpr std::string_view hostNames[] = {"127.0.0.1", "localhost", "[::1]"};

/// Takes as long for a wrong token as for the right one.
bool isSameToken(std::string_view a, std::string_view b) {
    unsigned difference = a.size() == b.size() ? 0 : 1;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        difference |= static_cast<unsigned char>(a[i]) ^ static_cast<unsigned char>(b[i]);
    }
    return difference == 0;
}

bool isJson(std::string_view contentType) {
    return contentType == "application/json" || contentType == "application/json;charset=utf-8" ||
           contentType == "application/json; charset=utf-8" ||
           contentType == "application/json;charset=UTF-8" ||
           contentType == "application/json; charset=UTF-8";
}

std::optional<Refusal> checkNames(const RequestHead& head, const AccessRules& rules) {
    if (head.count("host") != 1) {
        return Refusal{400, "a request has to have one Host"};
    }
    if (!isOwnHost(head.get("host"), rules.port)) {
        return Refusal{403, "this server answers only to 127.0.0.1, localhost and [::1] with its port"};
    }
    if (head.count("origin") > 1 || head.count("sec-fetch-site") > 1) {
        return Refusal{400, "a request may have one Origin"};
    }
    if (head.count("origin") == 1 && !isOwnOrigin(head.get("origin"), rules.port)) {
        return Refusal{403, "this server answers only to its own page"};
    }
    const std::string_view site = head.get("sec-fetch-site");
    if (head.count("sec-fetch-site") == 1 && site != "same-origin" && site != "none") {
        return Refusal{
            403,
            "open the address that ombrel-explorer printed by hand: links of other pages don't lead here"};
    }
    return std::nullopt;
}

std::optional<Refusal> checkOperation(const RequestHead& head, const AccessRules& rules) {
    if (head.count("x-ombrel-token") != 1 || !isSameToken(head.get("x-ombrel-token"), rules.token)) {
        return Refusal{403, "this needs the token of the address that ombrel-explorer printed"};
    }
    if (head.method != "POST") {
        return std::nullopt;
    }
    if (head.count("origin") == 0) {
        return Refusal{403, "this needs the page's Origin"};
    }
    if (head.count("content-type") != 1 || !isJson(head.get("content-type"))) {
        return Refusal{415, "the body has to be application/json"};
    }
    return std::nullopt;
}

} // namespace

bool isOwnHost(std::string_view host, std::uint16_t port) {
    return std::any_of(std::begin(hostNames), std::end(hostNames), [&](std::string_view name) {
        return host == fmt::format("{}:{}", name, port) || (port == defaultPort && host == name);
    });
}

bool isOwnOrigin(std::string_view origin, std::uint16_t port) {
    return origin.starts_with(scheme) && isOwnHost(origin.substr(scheme.size()), port);
}

std::optional<Refusal> checkAccess(const RequestHead& head, const Route* route, const AccessRules& rules) {
    if (auto refusal = checkNames(head, rules)) {
        return refusal;
    }
    if (route == nullptr) {
        return Refusal{404, "there is nothing at this path"};
    }
    if (head.method != route->method) {
        return Refusal{405, fmt::format("this path can only be used with {}", route->method)};
    }
    return route->needsToken ? checkOperation(head, rules) : std::nullopt;
}

std::string makeToken() {
    std::array<unsigned char, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::system_error(errno, std::generic_category(), "no random numbers");
    }
    return fmt::format("{:02x}", fmt::join(bytes, ""));
}

} // namespace ombrel
