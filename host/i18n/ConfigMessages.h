#pragma once

#include "resource_core/BaseMsgID.h"

#include <memory>
#include <string_view>
#include <vector>

namespace fl::i18n {

/// The messages about configurations.
enum class ConfigMessage {
    PlaceholderError,
    EmptyText,
    TextAfterEnd,
    ExpectedValue,
    ExpectedFieldName,
    ExpectedColon,
    ExpectedCommaOrBrace,
    ExpectedCommaOrBracket,
    ExpectedDigit,
    NumberTooLarge,
    UnclosedString,
    ControlCharacter,
    InvalidEscape,
    InvalidUnicodeEscape,
    HalfSurrogatePair,
    UnclosedComment,
    StraySlash,
    TextTooLong,
    NestingTooDeep,
    DuplicateField,
    NoPath,
    ExtendsWithoutFile,
    ExtendsInCircle,
    UnreadableFile,
    TooManyLayers,
    ExpectedObject,
    ExpectedBoolean,
    ExpectedWholeNumber,
    ExpectedNonEmptyString,
    Count, ///< how many there are; no message
};

/// The identifier of a message with its arguments.
std::shared_ptr<resource_core::BaseMsgID>
makeMessage(ConfigMessage message, std::vector<resource_core::BaseMsgID::Argument> arguments = {});

/// The key of a message, which names it in its catalog.
const char* getConfigKey(ConfigMessage message);

/// The words of the message with this key, with {0}, {1} where arguments go; empty if there is no such
/// message.
std::u16string_view getConfigWords(std::string_view key);

} // namespace fl::i18n
