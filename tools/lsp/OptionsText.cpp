#include "lsp/OptionsText.h"

#include "text/TextEncoding.h"

#include <algorithm>

namespace ombrel::lsp {

namespace {

constexpr std::u16string_view separators = u" \t\r\n,:[]{}\"/";

/// The string, number or word at the start of a text; not empty unless the text is.
std::size_t measureToken(std::u16string_view text) {
    if (!text.starts_with(u'"')) {
        return std::max<std::size_t>(std::min(text.find_first_of(separators), text.size()),
                                     text.empty() ? 0 : 1);
    }
    std::size_t end = 1;
    while (end < text.size() && text[end] != u'"' && text[end] != u'\n' && text[end] != u'\r') {
        end += text[end] == u'\\' ? 2 : 1;
    }
    const bool isClosed = end < text.size() && text[end] == u'"';
    return std::min(end + (isClosed ? 1 : 0), text.size());
}

/// The comment at the start of a text; 0 if there is none.
std::size_t measureComment(std::u16string_view text) {
    if (text.starts_with(u"//")) {
        return std::min(text.find_first_of(u"\r\n"), text.size());
    }
    if (text.starts_with(u"/*")) {
        const std::size_t end = text.find(u"*/", 2);
        return end == std::u16string_view::npos ? text.size() : end + 2;
    }
    return 0;
}

std::string removeQuotes(std::u16string_view token) {
    const bool isOpen = token.starts_with(u'"');
    const bool isClosed = token.size() > 1 && token.ends_with(u'"');
    return encodeLossy(token.substr(isOpen ? 1 : 0, token.size() - (isOpen ? 1 : 0) - (isClosed ? 1 : 0)));
}

/// Walks over a text up to a place. Never fails: brackets that don't fit are ignored.
class PlaceFinder {
public:
    PlaceFinder(std::u16string_view text, std::size_t offset) : text(text), offset(offset) {}

    std::optional<OptionsPlace> find() {
        for (std::size_t i = 0; i < offset;) {
            if (const std::size_t comment = measureComment(text.substr(i)); comment > 0) {
                const bool goesOnAtEnd = text[i + 1] == u'/';
                if (offset < i + comment + (goesOnAtEnd ? 1 : 0)) {
                    return std::nullopt;
                }
                i += comment;
            } else if (separators.find(text[i]) != std::u16string_view::npos && text[i] != u'"') {
                visit(text[i++]);
            } else if (const std::size_t end = i + measureToken(text.substr(i)); offset <= end) {
                return describe(TextSpan{i, end});
            } else {
                readToken(text.substr(i, end - i));
                i = end;
            }
        }
        const bool startsToken =
            offset < text.size() &&
            (text[offset] == u'"' || separators.find(text[offset]) == std::u16string_view::npos);
        return describe(startsToken
                            ? std::optional(TextSpan{offset, offset + measureToken(text.substr(offset))})
                            : std::nullopt);
    }

private:
    struct Frame {
        bool isObject;
        bool isAtKey; ///< of an object: the next token is a name
        std::string key;
    };

    void visit(char16_t c) {
        if (c == u'{' || c == u'[') {
            frames.push_back({c == u'{', true, {}});
        } else if ((c == u'}' || c == u']') && !frames.empty()) {
            frames.pop_back();
        } else if (c == u':' && !frames.empty()) {
            frames.back().isAtKey = false;
        } else if (c == u',' && !frames.empty()) {
            frames.back().isAtKey = true;
        }
    }

    void readToken(std::u16string_view token) {
        if (!frames.empty() && frames.back().isObject && frames.back().isAtKey) {
            frames.back().key = removeQuotes(token);
        }
    }

    std::optional<OptionsPlace> describe(std::optional<TextSpan> token) const {
        if (frames.empty()) {
            return std::nullopt;
        }
        OptionsPlace place;
        for (auto frame = frames.begin(); frame + 1 != frames.end(); ++frame) {
            if (frame->isObject) {
                place.keys.push_back(frame->key);
            }
        }
        const Frame& last = frames.back();
        place.isKey = last.isObject && last.isAtKey;
        place.text = token;
        if (last.isObject) {
            place.key = place.isKey && token
                            ? removeQuotes(text.substr(token->begin, token->end - token->begin))
                            : last.key;
        } else if (!place.keys.empty()) { // the elements of a list belong to the field that has the list
            place.key = place.keys.back();
            place.keys.pop_back();
        }
        if (token) {
            const std::size_t next = text.find_first_not_of(u" \t", token->end);
            place.hasColon = next != std::u16string_view::npos && text[next] == u':';
        }
        return place;
    }

    std::u16string_view text;
    std::size_t offset;
    std::vector<Frame> frames;
};

} // namespace

TextSpan findFaultyText(std::u16string_view text, std::size_t place) {
    return {place, place + measureToken(text.substr(place))};
}

std::optional<OptionsPlace> findOptionsPlace(std::u16string_view text, std::size_t offset) {
    return PlaceFinder(text, offset).find();
}

} // namespace ombrel::lsp
