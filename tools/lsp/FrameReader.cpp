#include "lsp/FrameReader.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headerEnd = "\r\n\r\n";

bool isSameWord(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

std::string_view trim(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
    return text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

std::optional<std::uint64_t> parseLength(std::string_view digits) {
    std::uint64_t length = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return length;
}

/// The length that a header gives; nothing if it gives none, or two that differ.
std::optional<std::uint64_t> findLength(std::string_view header) {
    std::optional<std::uint64_t> length;
    while (!header.empty()) {
        const std::string_view line = header.substr(0, header.find(lineEnd));
        header.remove_prefix(std::min(line.size() + lineEnd.size(), header.size()));
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            return std::nullopt;
        }
        if (isSameWord(trim(line.substr(0, colon)), "Content-Length")) {
            const auto found = parseLength(trim(line.substr(colon + 1)));
            if (!found || (length && length != found)) {
                return std::nullopt;
            }
            length = found;
        }
    }
    return length;
}

} // namespace

void FrameReader::append(std::string_view bytes) {
    const auto skippedNow = static_cast<std::size_t>(std::min<std::uint64_t>(skipped, bytes.size()));
    skipped -= skippedNow;
    bytes.remove_prefix(skippedNow);
    if (start > 0 && start >= buffer.size() / 2) {
        buffer.erase(0, start);
        start = 0;
    }
    buffer += bytes;
}

std::optional<FrameReader::Frame> FrameReader::getNext() {
    if (isOver) {
        return std::nullopt;
    }
    if (!bodySize) {
        if (auto fault = readHeader()) {
            return fault;
        }
    }
    return bodySize ? readBody() : std::nullopt;
}

/// Returns a fault or nothing.
std::optional<FrameReader::Frame> FrameReader::readHeader() {
    const std::string_view rest = std::string_view(buffer).substr(start);
    const std::string_view head = rest.substr(0, maximalHeaderSize);
    const std::size_t size = head.find(headerEnd);
    if (size == std::string_view::npos) {
        return head.size() < maximalHeaderSize
                   ? std::nullopt
                   : std::optional(failForever(
                         fmt::format("the header of a message has {} bytes at most", maximalHeaderSize)));
    }
    const auto length = findLength(head.substr(0, size));
    if (!length) {
        return failForever("the header of a message needs one Content-Length, a number of bytes");
    }
    start += size + headerEnd.size();
    if (*length <= maximalBodySize) {
        bodySize = length;
        return std::nullopt;
    }
    const auto available = static_cast<std::size_t>(std::min<std::uint64_t>(*length, buffer.size() - start));
    start += available;
    skipped = *length - available;
    return FrameFault{
        fmt::format("a message of {} bytes: {} MiB is the limit", *length, maximalBodySize >> 20), false};
}

std::optional<FrameReader::Frame> FrameReader::readBody() {
    if (buffer.size() - start < *bodySize) {
        return std::nullopt;
    }
    std::string body = buffer.substr(start, static_cast<std::size_t>(*bodySize));
    start += body.size();
    bodySize.reset();
    if (start == buffer.size()) {
        std::string().swap(buffer); // a large message's memory isn't kept; an assignment would keep it
        start = 0;
    }
    return body;
}

FrameReader::Frame FrameReader::failForever(std::string text) {
    isOver = true;
    return FrameFault{std::move(text), true};
}

} // namespace ombrel::lsp
