#include "config/JsonBuilder.h"

#include "config/quote.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

namespace ca::utils {

using fl::i18n::ConfigMessage;

namespace {

constexpr std::size_t maximalDuplicateCount = 99;

/// The double closest to a number that the reader found well-formed: 0 for a tiny one, infinity for a huge
/// one. A `long double` reaches beyond all numbers that the reader lets pass at the upper end, and so tells
/// the two apart.
double toDouble(std::u16string_view lexeme) {
    const std::string text(lexeme.begin(), lexeme.end());
    double value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc()) {
        return value;
    }
    long double wide = 0;
    std::from_chars(text.data(), text.data() + text.size(), wide);
    return std::fabs(wide) > 1 ? std::numeric_limits<double>::infinity() : 0;
}

} // namespace

bool JsonBuilder::Null() {
    return add(JsonValue(getSpan(input.Tell() - std::string_view("null").size())));
}

bool JsonBuilder::Bool(bool value) {
    return add(JsonValue(value, getSpan(input.Tell() - std::string_view(value ? "true" : "false").size())));
}

bool JsonBuilder::RawNumber(const Ch*, rapidjson::SizeType length, bool) {
    const std::size_t first = input.Tell() - length;
    const double value = toDouble(std::u16string_view(input.getText()).substr(first, length));
    return std::isfinite(value) ? add(JsonValue(value, getSpan(first)))
                                : refuse(ConfigMessage::NumberTooLarge);
}

bool JsonBuilder::String(const Ch*, rapidjson::SizeType, bool) {
    return add(JsonValue(input.takeString(), getSpan(input.getStringStart())));
}

bool JsonBuilder::Key(const Ch*, rapidjson::SizeType, bool) {
    levels.back().name = input.takeString();
    levels.back().nameSpan = getSpan(input.getStringStart());
    return true;
}

bool JsonBuilder::EndObject(rapidjson::SizeType) {
    Level level = std::move(levels.back());
    levels.pop_back();
    const JsonPosition end = positions.get(input.Tell() + 1);
    return add(JsonValue(JsonObject(std::move(level.fields)), JsonSpan{level.start, end}));
}

bool JsonBuilder::EndArray(rapidjson::SizeType) {
    Level level = std::move(levels.back());
    levels.pop_back();
    const JsonPosition end = positions.get(input.Tell() + 1);
    return add(JsonValue(std::move(level.elements), JsonSpan{level.start, end}));
}

/// From the given offset to where the reader is.
JsonSpan JsonBuilder::getSpan(std::size_t first) {
    const JsonPosition start = positions.get(first);
    return {start, positions.get(input.Tell())};
}

bool JsonBuilder::open(bool isObject) {
    if (levels.size() == maximalJsonDepth) {
        return refuse(ConfigMessage::NestingTooDeep);
    }
    levels.push_back({isObject, positions.get(input.Tell()), {}, {}, {}, {}});
    return true;
}

bool JsonBuilder::refuse(ConfigMessage reason) {
    refusal = reason;
    return false;
}

bool JsonBuilder::add(JsonValue value) {
    if (levels.empty()) {
        root = std::move(value);
    } else if (levels.back().isObject) {
        addField(levels.back(), std::move(value));
    } else {
        levels.back().elements.push_back(std::move(value));
    }
    return true;
}

void JsonBuilder::addField(Level& object, JsonValue value) {
    JsonField field{object.nameSpan, std::move(value)};
    const auto [place, isNew] = object.fields.insert_or_assign(std::move(object.name), std::move(field));
    if (!isNew && faults.size() < maximalDuplicateCount) {
        faults.push_back({fl::i18n::makeMessage(ConfigMessage::DuplicateField, {quote(place->first)}),
                          object.nameSpan.start, object.nameSpan.end});
    }
}

} // namespace ca::utils
