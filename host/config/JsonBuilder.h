#pragma once

#include "ca/utils/JsonDocument.h"
#include "config/JsonInput.h"
#include "config/rapidjson.h"
#include "i18n/ConfigMessages.h"

#include <optional>
#include <string>
#include <vector>

namespace ca::utils {

/// Makes values of what RapidJSON's reader comes across. Open arrays and objects are kept in a list, so that
/// a deep text uses no call stack.
class JsonBuilder : public rapidjson::BaseReaderHandler<JsonEncoding, JsonBuilder> {
public:
    /// The input has to outlive the builder.
    explicit JsonBuilder(JsonInput& input) : input(input), positions(input.getText()) {}

    // Called by the reader when it is after a value or a name, or before a bracket. A result of false
    // ends the reading.
    bool Null();
    bool Bool(bool value);
    bool RawNumber(const Ch*, rapidjson::SizeType length, bool);
    bool String(const Ch*, rapidjson::SizeType, bool);
    bool Key(const Ch*, rapidjson::SizeType, bool);
    bool StartObject() { return open(true); }
    bool EndObject(rapidjson::SizeType);
    bool StartArray() { return open(false); }
    bool EndArray(rapidjson::SizeType);

    /// Why the builder itself ended the reading, if it did.
    const std::optional<fl::i18n::ConfigMessage>& getRefusal() const { return refusal; }

    /// Names that come twice in an object.
    std::vector<JsonFault> takeFaults() { return std::move(faults); }

    /// The outermost value, after a reading without a syntax error.
    const JsonValue& getRoot() const { return root; }

private:
    /// An array or object that isn't closed yet.
    struct Level {
        bool isObject;
        JsonPosition start;
        JsonObject::Fields fields;
        std::vector<JsonValue> elements;
        std::u16string name; ///< of the field whose value comes next
        JsonSpan nameSpan;
    };

    JsonSpan getSpan(std::size_t first);
    bool open(bool isObject);
    bool refuse(fl::i18n::ConfigMessage reason);
    bool add(JsonValue value);
    void addField(Level& object, JsonValue value);

    JsonInput& input;
    PositionCounter positions;
    std::vector<Level> levels; ///< from the outermost to the innermost
    JsonValue root;
    std::vector<JsonFault> faults;
    std::optional<fl::i18n::ConfigMessage> refusal;
};

} // namespace ca::utils
