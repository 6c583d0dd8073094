#pragma once

#include "ca/utils/JsonReader.h"
#include "ca/utils/JsonValue.h"
#include "resource_core/BaseMsgID.h"

#include <memory>
#include <optional>
#include <utility>

namespace ca::utils {

/// What flows from stage to stage while a JSON value is taken apart.
template <class T>
struct JsonReaderValue {
    /// Records an issue at the anchor.
    void recordIssue(std::shared_ptr<resource_core::BaseMsgID> message) const;

    /// Makes the message of an issue from its arguments and records it at the anchor.
    template <class Id, class... Arguments>
    void recordIssue(Arguments&&... arguments) const;

    /// The same for an issue about a field, at its name.
    template <class Id, class... Arguments>
    void recordFieldIssue(const JsonField& field, Arguments&&... arguments) const;

    JsonReader* reader;     ///< not owned, never null
    JsonValue anchor;       ///< where issues are placed
    std::optional<T> value; ///< empty if the field is absent or an earlier stage refused it
};

template <class T>
void JsonReaderValue<T>::recordIssue(std::shared_ptr<resource_core::BaseMsgID> message) const {
    reader->recordValueIssue(anchor, std::move(message));
}

template <class T>
template <class Id, class... Arguments>
void JsonReaderValue<T>::recordIssue(Arguments&&... arguments) const {
    recordIssue(std::make_shared<Id>(std::forward<Arguments>(arguments)...));
}

template <class T>
template <class Id, class... Arguments>
void JsonReaderValue<T>::recordFieldIssue(const JsonField& field, Arguments&&... arguments) const {
    reader->recordFieldIssue(field, std::make_shared<Id>(std::forward<Arguments>(arguments)...));
}

} // namespace ca::utils
