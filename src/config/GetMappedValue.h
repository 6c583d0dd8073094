#pragma once

#include <ca/utils/JsonStages.h>
#include <resource_core/BaseMsgID.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

namespace ca::formatting {

/// Stage that turns a JSON string into the value that a table has for it.
template <class T>
struct GetMappedValue {
    const std::unordered_map<std::u16string, T>& strings; ///< the caller's, and outlives the stage
    std::shared_ptr<resource_core::BaseMsgID> issue;      ///< recorded if a string isn't in the table
};

/// Has no value if there is no string of at least one character (which is an issue unless the field is
/// absent), or if the table doesn't have it.
template <class T>
ca::utils::JsonReaderValue<T> operator|(ca::utils::JsonReaderValue<ca::utils::JsonValue> in,
                                        GetMappedValue<T> stage) {
    const auto text = in | ca::utils::IsNonEmptyString{};
    ca::utils::JsonReaderValue<T> out{in.reader, in.anchor, std::nullopt};
    if (!text.value) {
        return out;
    }
    const auto found = stage.strings.find(*text.value);
    if (found == stage.strings.end()) {
        in.recordIssue(std::move(stage.issue));
    } else {
        out.value = found->second;
    }
    return out;
}

} // namespace ca::formatting
