#include "explorer/server/RequestHead.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

namespace ombrel {

namespace {

using Unexpected = tl::unexpected<Refusal>;

constexpr std::size_t maximalFieldCount = 100;
constexpr std::size_t maximalTargetLength = 2000;

Unexpected refuse(int status, std::string text) {
    return Unexpected(Refusal{status, std::move(text)});
}

bool isVisible(char c) {
    return c > ' ' && c < '\x7F';
}

/// What names of methods and fields consist of.
bool isTokenCharacter(char c) {
    const bool isAlphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    return isAlphanumeric ||
           (isVisible(c) && std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos);
}

bool isToken(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

std::string toLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string_view trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

class HeadParser {
public:
    explicit HeadParser(std::string_view bytes) : rest(bytes) {}

    tl::expected<RequestHead, Refusal> parse() {
        if (rest.size() > maximalHeadLength) {
            return refuse(431, "the head of the request is too long");
        }
        if (!parseRequestLine() || !parseFields() || !checkFraming()) {
            return Unexpected(std::move(refusal));
        }
        return std::move(head);
    }

private:
    bool fail(int status, std::string text) {
        refusal = {status, std::move(text)};
        return false;
    }

    /// The next line without its end; nothing if it has no proper one.
    std::optional<std::string_view> takeLine() {
        const std::size_t length = rest.find_first_of(std::string_view("\r\n\0", 3));
        if (length == std::string_view::npos || rest.substr(length, 2) != "\r\n") {
            return std::nullopt;
        }
        const std::string_view line = rest.substr(0, length);
        rest.remove_prefix(length + 2);
        return line;
    }

    bool parseRequestLine() {
        const auto line = takeLine();
        const std::size_t first = line ? line->find(' ') : std::string_view::npos;
        const std::size_t last = line ? line->rfind(' ') : std::string_view::npos;
        if (first == last) {
            return fail(400, "this is no request line");
        }
        head.method = line->substr(0, first);
        head.target = line->substr(first + 1, last - first - 1);
        const std::string_view version = line->substr(last + 1);
        if (!isToken(head.method) || (version != "HTTP/1.1" && version != "HTTP/1.0")) {
            return fail(400, "this is no request line of HTTP/1.1");
        }
        head.isKeptAlive = version == "HTTP/1.1";
        if (head.target.size() > maximalTargetLength) {
            return fail(414, "the path is too long");
        }
        const bool isPath =
            head.target.starts_with('/') && std::all_of(head.target.begin(), head.target.end(), isVisible);
        return isPath || fail(400, "the target of the request has to be a path");
    }

    bool parseFields() {
        while (const auto line = takeLine()) {
            if (line->empty()) {
                return rest.empty() || fail(400, "there is more after the head");
            }
            if (head.fields.size() == maximalFieldCount) {
                return fail(431, "the request has too many header fields");
            }
            if (!parseField(*line)) {
                return false;
            }
        }
        return fail(400, "a line of the head doesn't end in CR LF");
    }

    bool parseField(std::string_view line) {
        const std::size_t colon = line.find(':');
        const std::string_view name = line.substr(0, colon);
        const std::string_view value = colon == std::string_view::npos ? "" : trim(line.substr(colon + 1));
        const bool hasControl = std::any_of(value.begin(), value.end(), [](char c) {
            return (c >= '\0' && c < ' ' && c != '\t') || c == '\x7F';
        });
        if (colon == std::string_view::npos || !isToken(name) || hasControl) {
            return fail(400, "this is no header field");
        }
        head.fields.push_back({toLowerCase(name), std::string(value)});
        return true;
    }

    bool checkFraming() {
        if (head.count("transfer-encoding") != 0 || head.count("upgrade") != 0) {
            return fail(400, "send the body with a Content-Length, without any encoding or upgrade");
        }
        const std::size_t lengths = head.count("content-length");
        const bool hasBody = head.method == "POST";
        if (lengths > 1 || (hasBody && lengths == 0)) {
            return fail(400, "a POST has to have one Content-Length");
        }
        if (lengths == 1 && !parseLength(head.get("content-length"))) {
            return false;
        }
        if (!hasBody && head.bodyLength != 0) {
            return fail(400, "only a POST may have a body");
        }
        const std::string connection = toLowerCase(head.get("connection"));
        head.isKeptAlive = head.isKeptAlive && connection.find("close") == std::string::npos;
        return true;
    }

    bool parseLength(std::string_view text) {
        const bool isNumber = !text.empty() && std::all_of(text.begin(), text.end(),
                                                           [](char c) { return c >= '0' && c <= '9'; });
        if (!isNumber) {
            return fail(400, "Content-Length has to be a number");
        }
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), head.bodyLength);
        if (error != std::errc() || head.bodyLength > maximalBodyLength) {
            return fail(413, fmt::format("the body is too long: {} bytes is the limit", maximalBodyLength));
        }
        return true;
    }

    std::string_view rest;
    RequestHead head;
    Refusal refusal{400, ""};
};

} // namespace

std::size_t RequestHead::count(std::string_view name) const {
    return static_cast<std::size_t>(
        std::count_if(fields.begin(), fields.end(), [&](const Field& field) { return field.name == name; }));
}

std::string_view RequestHead::get(std::string_view name) const {
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const Field& field) { return field.name == name; });
    return found == fields.end() ? std::string_view() : found->value;
}

tl::expected<RequestHead, Refusal> parseHead(std::string_view bytes) {
    return HeadParser(bytes).parse();
}

} // namespace ombrel
