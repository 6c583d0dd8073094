#include "ca/utils/JsonValue.h"

#include <utility>

namespace ca::utils {

namespace {

/// What a value holds if it is too large to be copied.
template <class T>
using Shared = std::shared_ptr<const T>;

template <class T>
Shared<T> share(T content) {
    return std::make_shared<const T>(std::move(content));
}

} // namespace

JsonValue::JsonValue(std::optional<JsonSpan> span) : span(span) {}

JsonValue::JsonValue(bool value, std::optional<JsonSpan> span)
    : kind(BooleanKind), content(value), span(span) {}

JsonValue::JsonValue(double value, std::optional<JsonSpan> span)
    : kind(NumberKind), content(value), span(span) {}

JsonValue::JsonValue(std::u16string value, std::optional<JsonSpan> span)
    : kind(StringKind), content(share(std::move(value))), span(span) {}

JsonValue::JsonValue(std::vector<JsonValue> elements, std::optional<JsonSpan> span)
    : kind(ArrayKind), content(share(std::move(elements))), span(span) {}

JsonValue::JsonValue(JsonObject object, std::optional<JsonSpan> span)
    : kind(ObjectKind), content(std::move(object)), span(span) {}

bool JsonValue::getBoolean() const {
    return std::any_cast<bool>(content);
}

double JsonValue::getNumber() const {
    return std::any_cast<double>(content);
}

const std::u16string& JsonValue::getString() const {
    return *std::any_cast<const Shared<std::u16string>&>(content);
}

const std::vector<JsonValue>& JsonValue::getElements() const {
    return *std::any_cast<const Shared<std::vector<JsonValue>>&>(content);
}

JsonObject JsonValue::getObject() const {
    return std::any_cast<const JsonObject&>(content);
}

JsonObject::JsonObject(Fields fields) : fields(std::make_shared<const Fields>(std::move(fields))) {}

const JsonField* JsonObject::find(const std::u16string& name) const {
    const auto found = fields->find(name);
    return found == fields->end() ? nullptr : &found->second;
}

} // namespace ca::utils
