#include "i18n/ConfigMessages.h"

#include "resource_core/caConfig.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace fl::i18n {

namespace {

struct Entry {
    ConfigMessage message;
    const char* key;
    std::u16string_view words;
};

constexpr std::array<Entry, static_cast<std::size_t>(ConfigMessage::Count)> entries = {{
    {ConfigMessage::PlaceholderError, "PlaceholderError", u"{0}"},
    {ConfigMessage::EmptyText, "EmptyText", u"expected an object, found nothing"},
    {ConfigMessage::TextAfterEnd, "TextAfterEnd", u"nothing but comments may follow the outermost value"},
    {ConfigMessage::ExpectedValue, "ExpectedValue", u"expected a value"},
    {ConfigMessage::ExpectedFieldName, "ExpectedFieldName", u"expected the name of a field in double quotes"},
    {ConfigMessage::ExpectedColon, "ExpectedColon", u"expected ':' after the name of the field"},
    {ConfigMessage::ExpectedCommaOrBrace, "ExpectedCommaOrBrace", u"expected ',' or '}'"},
    {ConfigMessage::ExpectedCommaOrBracket, "ExpectedCommaOrBracket", u"expected ',' or ']'"},
    {ConfigMessage::ExpectedDigit, "ExpectedDigit", u"expected a digit"},
    {ConfigMessage::NumberTooLarge, "NumberTooLarge", u"the number is too large"},
    {ConfigMessage::UnclosedString, "UnclosedString", u"the string is not closed on its line"},
    {ConfigMessage::ControlCharacter, "ControlCharacter",
     u"a control character in a string has to be written as an escape sequence"},
    {ConfigMessage::InvalidEscape, "InvalidEscape", u"there is no such escape sequence"},
    {ConfigMessage::InvalidUnicodeEscape, "InvalidUnicodeEscape", u"\\u needs four hexadecimal digits"},
    {ConfigMessage::HalfSurrogatePair, "HalfSurrogatePair", u"half a surrogate pair is no character"},
    {ConfigMessage::UnclosedComment, "UnclosedComment", u"the comment is not closed by '*/'"},
    {ConfigMessage::StraySlash, "StraySlash", u"a comment starts with '//' or '/*'"},
    {ConfigMessage::TextTooLong, "TextTooLong", u"the text is longer than 16 MB"},
    {ConfigMessage::NestingTooDeep, "NestingTooDeep",
     u"arrays and objects are nested deeper than 256 levels"},
    {ConfigMessage::DuplicateField, "DuplicateField", u"{0} is there twice; remove one of the two"},
    {ConfigMessage::NoPath, "NoPath", u"extends: expected a path or a list of paths, found {0}"},
    {ConfigMessage::ExtendsWithoutFile, "ExtendsWithoutFile",
     u"extends: paths are relative to the file that they are in, and this text is in none"},
    {ConfigMessage::ExtendsInCircle, "ExtendsInCircle", u"extends: {0} extends this file in turn"},
    {ConfigMessage::UnreadableFile, "UnreadableFile", u"extends: can't read {0}: {1}"},
    {ConfigMessage::TooManyLayers, "TooManyLayers", u"extends: more than {0} files in one chain"},
    {ConfigMessage::ExpectedObject, "ExpectedObject", u"expected an object, found {0}"},
    {ConfigMessage::ExpectedBoolean, "ExpectedBoolean", u"{0}: expected true or false, found {1}"},
    {ConfigMessage::ExpectedWholeNumber, "ExpectedWholeNumber",
     u"{0}: expected a whole number from 0 to 4294967295, found {1}"},
    {ConfigMessage::ExpectedNonEmptyString, "ExpectedNonEmptyString",
     u"{0}: expected a string that is not empty, found {1}"},
}};

constexpr bool areInOrder() {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].message != static_cast<ConfigMessage>(i) || entries[i].words.empty()) {
            return false;
        }
    }
    return true;
}

static_assert(areInOrder(), "each message has its entry, at its number, with words");

} // namespace

const char* getConfigKey(ConfigMessage message) {
    return entries[static_cast<std::size_t>(message)].key;
}

std::shared_ptr<resource_core::BaseMsgID>
makeMessage(ConfigMessage message, std::vector<resource_core::BaseMsgID::Argument> arguments) {
    return std::make_shared<resource_core::BaseMsgID>(resource_core::BaseMsgID{
        std::move(arguments), CodeAnalyzer::caConfig::catalogName, getConfigKey(message)});
}

std::u16string_view getConfigWords(std::string_view key) {
    const auto* found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.key == key; });
    return found == entries.end() ? std::u16string_view() : found->words;
}

} // namespace fl::i18n
