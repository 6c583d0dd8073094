#include "ca/utils/JsonStages.h"

#include "config/quote.h"
#include "i18n/ConfigMessages.h"

#include <cmath>
#include <limits>

namespace ca::utils {

using fl::i18n::ConfigMessage;
using fl::i18n::makeMessage;

namespace {

/// Asks the accessor for the value after a stage that takes some values only. What it gives nothing for is
/// refused with an issue.
template <class T, class Accessor>
JsonReaderValue<T> take(JsonReaderValue<JsonValue> in, ConfigMessage refusal, Accessor accessor) {
    JsonReaderValue<T> out{in.reader, in.anchor, std::nullopt};
    if (!in.value) {
        return out;
    }
    out.value = accessor(*in.value);
    if (!out.value) {
        const std::u16string name = in.reader->getName(in.anchor);
        in.recordIssue(makeMessage(refusal, {name.empty() ? u"value" : name, quoteValue(*in.value)}));
    }
    return out;
}

bool isUnsignedInteger(double number) {
    return 0 <= number && number <= std::numeric_limits<std::uint32_t>::max() && number == std::floor(number);
}

} // namespace

JsonReaderValue<JsonValue> operator|(JsonReaderValue<JsonValue> in, const GetOptionalField& stage) {
    JsonReaderValue<JsonValue> out{in.reader, in.anchor, std::nullopt};
    if (!in.value) {
        return out;
    }
    if (in.value->getKind() != JsonValue::ObjectKind) {
        in.recordIssue(makeMessage(ConfigMessage::ExpectedObject, {quoteValue(*in.value)}));
        return out;
    }
    const JsonObject object = in.value->getObject();
    if (const JsonField* field = object.find(stage.name)) {
        out.anchor = field->value;
        out.value = field->value;
    }
    return out;
}

JsonReaderValue<bool> operator|(JsonReaderValue<JsonValue> in, const IsBool&) {
    return take<bool>(std::move(in), ConfigMessage::ExpectedBoolean, [](const JsonValue& value) {
        return value.getKind() == JsonValue::BooleanKind ? std::optional(value.getBoolean()) : std::nullopt;
    });
}

JsonReaderValue<std::uint32_t> operator|(JsonReaderValue<JsonValue> in, const IsUnsignedInteger&) {
    using Result = std::optional<std::uint32_t>;
    return take<std::uint32_t>(std::move(in), ConfigMessage::ExpectedWholeNumber, [](const JsonValue& value) {
        const bool fits = value.getKind() == JsonValue::NumberKind && isUnsignedInteger(value.getNumber());
        return fits ? Result(static_cast<std::uint32_t>(value.getNumber())) : std::nullopt;
    });
}

JsonReaderValue<std::u16string> operator|(JsonReaderValue<JsonValue> in, const IsNonEmptyString&) {
    using Result = std::optional<std::u16string>;
    return take<std::u16string>(
        std::move(in), ConfigMessage::ExpectedNonEmptyString, [](const JsonValue& value) {
            const bool fits = value.getKind() == JsonValue::StringKind && !value.getString().empty();
            return fits ? Result(value.getString()) : std::nullopt;
        });
}

} // namespace ca::utils
