#pragma once

#include "ca/utils/JsonValue.h"
#include "fl/filesystem/basic_path.h"
#include "ombrel/api.h"
#include "resource_core/BaseMsgID.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ca::utils {

template <class T>
struct JsonReaderValue;

/// A problem that was found while a value was taken apart.
struct JsonIssue {
    std::shared_ptr<resource_core::BaseMsgID> message;
    std::optional<fl::filesystem::path> path;
    std::optional<JsonPosition> start;
    std::optional<JsonPosition> end; ///< just after the last character
};

/// Takes a JSON value apart (include JsonStages.h for that) and collects what is wrong with it:
///
///     reader.getRoot() | GetOptionalField{u"columnLimit"} | IsUnsignedInteger{}
///
/// The values that flow through the stages point at their reader, which has to outlive them. One thread at a
/// time.
class OMBREL_HOST_API JsonReader {
public:
    /// `path` is the file that the value is in, if there is one.
    JsonReader(std::optional<fl::filesystem::path> path, const JsonValue& root);

    /// The reader's value, as anchor and as value.
    JsonReaderValue<JsonValue> getRoot();

    /// Records an issue about the value, at its place.
    void recordValueIssue(const JsonValue& value, std::shared_ptr<resource_core::BaseMsgID> message);

    /// Records an issue about the field, at its name.
    void recordFieldIssue(const JsonField& field, std::shared_ptr<resource_core::BaseMsgID> message);

    /// What was recorded, in that order. Invalidated by the next issue.
    const std::vector<JsonIssue>& getIssues() const { return issues; }

    /// The names that lead from the root to the value, joined by dots: "lineBreakBehavior.Lists". Empty for
    /// the root and for a value that has no place in it. Takes time in proportion to the objects on the way.
    std::u16string getName(const JsonValue& value) const;

private:
    std::optional<fl::filesystem::path> path;
    JsonValue root;
    std::vector<JsonIssue> issues;
};

} // namespace ca::utils
