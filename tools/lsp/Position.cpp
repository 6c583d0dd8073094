#include "lsp/Position.h"

#include <algorithm>
#include <limits>

namespace ombrel::lsp {

namespace {

bool isHighSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xD800;
}

bool isLowSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xDC00;
}

/// How many 16-bit characters the character at the start of the text has.
std::size_t getUnitCount(std::u16string_view text) {
    return text.size() > 1 && isHighSurrogate(text[0]) && isLowSurrogate(text[1]) ? 2 : 1;
}

/// The length, in the encoding, of the character that `unitCount` 16-bit characters from `first` on are.
std::uint32_t getWidth(char16_t first, std::size_t unitCount, PositionEncoding encoding) {
    switch (encoding) {
    case PositionEncoding::Utf16:
        return static_cast<std::uint32_t>(unitCount);
    case PositionEncoding::Utf32:
        return 1;
    case PositionEncoding::Utf8:
        break;
    }
    if (unitCount == 2) {
        return 4;
    }
    return first < 0x80 ? 1 : first < 0x800 ? 2 : 3;
}

/// Numbers that are too large mean places after every end.
std::uint32_t readNumber(const Json& json) {
    const auto number = json.get<std::int64_t>();
    if (!json.is_number_integer() || number < 0) {
        throw Json::type_error::create(302, "expected a number from 0", &json);
    }
    return static_cast<std::uint32_t>(
        std::min<std::int64_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

} // namespace

Position readPosition(const Json& json) {
    return {readNumber(json.at("line")), readNumber(json.at("character"))};
}

Range readRange(const Json& json) {
    return {readPosition(json.at("start")), readPosition(json.at("end"))};
}

Json writePosition(Position position) {
    return {{"line", position.line}, {"character", position.character}};
}

namespace {

/// Appends the starts of lines from `begin`, exclusive, to `end`, inclusive.
void appendStarts(std::u16string_view text, std::size_t begin, std::size_t end,
                  std::vector<std::size_t>& starts) {
    for (std::size_t i = begin; i < end; ++i) {
        const char16_t c = text[i];
        if (c == u'\n' || (c == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n'))) {
            starts.push_back(i + 1);
        }
    }
}

} // namespace

LineIndex::LineIndex(std::u16string_view text) : starts{0} {
    appendStarts(text, 0, text.size(), starts);
}

std::size_t LineIndex::getEnd(std::u16string_view text, std::size_t line) const {
    if (line + 1 == starts.size()) {
        return text.size();
    }
    const std::size_t next = starts[line + 1];
    const bool isPair = text[next - 1] == u'\n' && next - starts[line] > 1 && text[next - 2] == u'\r';
    return next - (isPair ? 2 : 1);
}

std::size_t LineIndex::findLine(std::size_t offset) const {
    return static_cast<std::size_t>(std::upper_bound(starts.begin(), starts.end(), offset) - starts.begin()) -
           1;
}

/// A start depends on the character before it and the one after it: starts that have both outside of the
/// change stay.
void LineIndex::update(std::u16string_view text, std::size_t offset, std::size_t removed,
                       std::size_t inserted) {
    const std::size_t first = offset == 0 ? 0 : findLine(offset - 1);
    const auto tail = std::upper_bound(starts.begin(), starts.end(), offset + removed);
    std::vector<std::size_t> between;
    appendStarts(text, starts[first], offset + inserted, between);
    for (auto start = tail; start != starts.end(); ++start) {
        *start = *start - removed + inserted;
    }
    const auto firstChanged = starts.begin() + static_cast<std::ptrdiff_t>(first) + 1;
    const auto place = starts.erase(firstChanged, std::max(firstChanged, tail));
    starts.insert(place, between.begin(), between.end());
}

std::size_t findOffset(std::u16string_view text, const LineIndex& lines, Position position,
                       PositionEncoding encoding) {
    if (position.line >= lines.getLineCount()) {
        return text.size();
    }
    std::size_t offset = lines.getStart(position.line);
    const std::size_t end = lines.getEnd(text, position.line);
    if (encoding == PositionEncoding::Utf16) {
        return std::min(offset + position.character, end);
    }
    for (std::uint32_t rest = position.character; offset < end;) {
        const std::size_t count = getUnitCount(text.substr(offset));
        const std::uint32_t width = getWidth(text[offset], count, encoding);
        if (width > rest) {
            break;
        }
        rest -= width;
        offset += count;
    }
    return offset;
}

std::uint32_t measure(std::u16string_view text, PositionEncoding encoding) {
    if (encoding == PositionEncoding::Utf16) {
        return static_cast<std::uint32_t>(text.size());
    }
    std::uint32_t length = 0;
    while (!text.empty()) {
        const std::size_t count = getUnitCount(text);
        length += getWidth(text.front(), count, encoding);
        text.remove_prefix(count);
    }
    return length;
}

Position PositionFinder::find(std::size_t offset) {
    if (encoding != PositionEncoding::Utf16 && offset > 0 && offset < text.size() &&
        isHighSurrogate(text[offset - 1]) && isLowSurrogate(text[offset])) {
        --offset; // only UTF-16 has a place inside of a character
    }
    const std::size_t line = lines.findLine(offset);
    if (line != lastLine || offset < lastOffset) {
        lastLine = line;
        lastOffset = lines.getStart(line);
        lastCharacter = 0;
    }
    lastCharacter += measure(text.substr(lastOffset, offset - lastOffset), encoding);
    lastOffset = offset;
    return {static_cast<std::uint32_t>(line), lastCharacter};
}

Json PositionFinder::writeRange(std::size_t begin, std::size_t end) {
    Json start = writePosition(find(begin));
    return {{"start", std::move(start)}, {"end", writePosition(find(end))}};
}

} // namespace ombrel::lsp
