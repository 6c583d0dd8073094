#pragma once

#include "ombrel/api.h"

#include <any>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ca::utils {

/// Line and column of a character, both from 1, columns in 16-bit characters. LF, CRLF and CR end a line.
using JsonPosition = std::pair<std::uint32_t, std::uint32_t>;

/// Where something is in its file.
struct JsonSpan {
    JsonPosition start;
    JsonPosition end; ///< just after the last character

    friend bool operator==(const JsonSpan&, const JsonSpan&) = default;
};

class JsonObject;

/// A value of a JSON text and its place there. Copies are cheap: they share their content, which never
/// changes.
///
/// The operation for another kind than the value's throws std::bad_any_cast.
class OMBREL_HOST_API JsonValue {
public:
    enum Kind : std::int32_t {
        NullKind = 0,
        BooleanKind = 1,
        StringKind = 2,
        NumberKind = 3,
        ArrayKind = 4,
        ObjectKind = 5,
    };

    /// A null without a place.
    JsonValue() = default;
    explicit JsonValue(std::optional<JsonSpan> span);
    JsonValue(bool value, std::optional<JsonSpan> span);
    JsonValue(const void*, std::optional<JsonSpan>) = delete; // a literal would become a boolean
    JsonValue(double value, std::optional<JsonSpan> span);
    JsonValue(std::u16string value, std::optional<JsonSpan> span);
    JsonValue(std::vector<JsonValue> elements, std::optional<JsonSpan> span);
    JsonValue(JsonObject object, std::optional<JsonSpan> span);

    Kind getKind() const { return kind; }
    bool getBoolean() const;
    double getNumber() const;

    /// The characters with all escapes resolved; well-formed UTF-16 if it was read from a text.
    const std::u16string& getString() const;

    const std::vector<JsonValue>& getElements() const;
    JsonObject getObject() const;

    /// Empty for a value that was made, not read.
    const std::optional<JsonSpan>& getSpan() const { return span; }

private:
    Kind kind = NullKind;
    std::any content;
    std::optional<JsonSpan> span;
};

/// A named value of an object.
struct JsonField {
    std::optional<JsonSpan> nameSpan; ///< of the name with its quotes
    JsonValue value;
};

/// The fields of an object by their names. Copies share their content.
class OMBREL_HOST_API JsonObject {
public:
    using Fields = std::unordered_map<std::u16string, JsonField>;

    explicit JsonObject(Fields fields);

    /// A copy of all fields.
    Fields getFields() const { return *fields; }

    /// One field; null if there is none. Lives as long as this object or a copy of it.
    const JsonField* find(const std::u16string& name) const;

    /// All fields without a copy, for as long as this object or a copy of it lives.
    const Fields& viewFields() const { return *fields; }

private:
    std::shared_ptr<const Fields> fields;
};

} // namespace ca::utils
