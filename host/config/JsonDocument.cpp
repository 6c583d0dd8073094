#include "ca/utils/JsonDocument.h"

#include "config/JsonBuilder.h"
#include "config/JsonInput.h"
#include "config/quote.h"
#include "config/rapidjson.h"
#include "i18n/ConfigMessages.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace ca::utils {

using fl::i18n::ConfigMessage;
using fl::i18n::makeMessage;

namespace {

constexpr unsigned readerFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseInsituFlag |
                                 rapidjson::kParseNumbersAsStringsFlag |
                                 rapidjson::kParseValidateEncodingFlag | rapidjson::kParseCommentsFlag |
                                 rapidjson::kParseTrailingCommasFlag;

constexpr std::size_t unicodeEscapeSize = std::u16string_view(u"\\uDC00").size();

/// A syntax error and the offset of it.
struct SyntaxFault {
    ConfigMessage reason;
    std::size_t offset;
};

bool isWordCharacter(char16_t c) {
    return c == u'-' || (u'a' <= (c | 0x20) && (c | 0x20) <= u'z');
}

/// Where the word starts that the reader gave up in the middle of: `trve` and not `ve`.
std::size_t findWordStart(std::u16string_view text, std::size_t offset) {
    while (offset > 0 && isWordCharacter(text[offset - 1])) {
        --offset;
    }
    return offset;
}

/// Offset after a string that starts at the offset and is well-formed.
std::size_t findStringEnd(std::u16string_view text, std::size_t offset) {
    do {
        offset += text[offset] == u'\\' ? 2 : 1;
        offset = text.find_first_of(u"\"\\", offset);
    } while (text[offset] != u'"');
    return offset + 1;
}

/// A string's fault at a character that isn't allowed there: an escape, a line end or another control
/// character.
ConfigMessage nameStringFault(char16_t c) {
    if (c == u'\\') {
        return ConfigMessage::InvalidEscape;
    }
    return c == u'\n' || c == u'\r' ? ConfigMessage::UnclosedString : ConfigMessage::ControlCharacter;
}

/// What is wrong with the first slash that starts no whole comment. All before it is well-formed.
SyntaxFault nameCommentFault(std::u16string_view text) {
    std::size_t offset = 0;
    while ((offset = text.find_first_of(u"\"/", offset)) < text.size()) {
        if (text[offset] == u'"') {
            offset = findStringEnd(text, offset);
        } else if (text.substr(offset).starts_with(u"//")) {
            offset = text.find_first_of(u"\r\n", offset);
        } else if (!text.substr(offset).starts_with(u"/*")) {
            return {ConfigMessage::StraySlash, offset};
        } else if (const std::size_t close = text.find(u"*/", offset + 2); close < text.size()) {
            offset = close + 2;
        } else {
            return {ConfigMessage::UnclosedComment, offset};
        }
    }
    return {ConfigMessage::StraySlash, text.size()};
}

SyntaxFault nameFault(std::u16string_view text, const rapidjson::ParseResult& result) {
    const std::size_t offset = result.Offset();
    const bool isAtEnd = offset == text.size();
    switch (result.Code()) {
    case rapidjson::kParseErrorDocumentEmpty:
        return {isAtEnd ? ConfigMessage::EmptyText : ConfigMessage::ExpectedValue, offset};
    case rapidjson::kParseErrorDocumentRootNotSingular:
        return {ConfigMessage::TextAfterEnd, offset};
    case rapidjson::kParseErrorObjectMissName:
        return {ConfigMessage::ExpectedFieldName, offset};
    case rapidjson::kParseErrorObjectMissColon:
        return {ConfigMessage::ExpectedColon, offset};
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
        return {ConfigMessage::ExpectedCommaOrBrace, offset};
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
        return {ConfigMessage::ExpectedCommaOrBracket, offset};
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
        return {ConfigMessage::InvalidUnicodeEscape, offset};
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
    case rapidjson::kParseErrorStringInvalidEncoding:
        return {ConfigMessage::HalfSurrogatePair, offset};
    case rapidjson::kParseErrorStringEscapeInvalid:
        return {nameStringFault(text[offset]), offset};
    case rapidjson::kParseErrorStringMissQuotationMark:
        return {ConfigMessage::UnclosedString, offset};
    case rapidjson::kParseErrorNumberTooBig:
        return {ConfigMessage::NumberTooLarge, offset};
    case rapidjson::kParseErrorNumberMissFraction:
    case rapidjson::kParseErrorNumberMissExponent:
        return {ConfigMessage::ExpectedDigit, offset};
    case rapidjson::kParseErrorUnspecificSyntaxError:
        return nameCommentFault(text); // the only one that the reader has no name for
    default:
        return {ConfigMessage::ExpectedValue, findWordStart(text, offset)};
    }
}

/// Has the reader go through the text. Empty if it came to the end.
std::optional<SyntaxFault> read(JsonInput& input, JsonBuilder& builder) {
    rapidjson::GenericReader<JsonEncoding, JsonEncoding, JsonAllocator> reader;
    try {
        const rapidjson::ParseResult result = reader.Parse<readerFlags>(input, builder);
        if (builder.getRefusal()) {
            return SyntaxFault{*builder.getRefusal(), result.Offset()};
        }
        return result.IsError() ? std::optional(nameFault(input.getText(), result)) : std::nullopt;
    } catch (const HalfSurrogate&) {
        return SyntaxFault{ConfigMessage::HalfSurrogatePair, input.Tell() - unicodeEscapeSize};
    }
}

} // namespace

JsonDocument readJson(const std::u16string& text) {
    if (text.size() > maximalJsonSize) {
        return {std::nullopt, {{makeMessage(ConfigMessage::TextTooLong), {1, 1}, std::nullopt}}};
    }
    JsonInput input(text);
    JsonBuilder builder(input);
    const std::optional<SyntaxFault> fault = read(input, builder);
    JsonDocument document{std::nullopt, builder.takeFaults()};
    if (fault) {
        const JsonPosition position = PositionCounter(text).get(fault->offset);
        document.faults.push_back({makeMessage(fault->reason), position, std::nullopt});
    } else if (const JsonValue& root = builder.getRoot(); root.getKind() == JsonValue::ObjectKind) {
        document.root = root.getObject();
    } else {
        document.faults.push_back({makeMessage(ConfigMessage::ExpectedObject, {quoteValue(root)}),
                                   root.getSpan()->start, root.getSpan()->end});
    }
    return document;
}

} // namespace ca::utils
