#include "ca/utils/JsonReader.h"

#include "ca/utils/JsonReaderValue.h"

#include <algorithm>
#include <utility>

namespace ca::utils {

namespace {

JsonIssue makeIssue(const std::optional<fl::filesystem::path>& path, const std::optional<JsonSpan>& span,
                    std::shared_ptr<resource_core::BaseMsgID> message) {
    JsonIssue issue{std::move(message), path, std::nullopt, std::nullopt};
    if (span) {
        issue.start = span->start;
        issue.end = span->end;
    }
    return issue;
}

bool contains(const std::optional<JsonSpan>& outer, const JsonSpan& inner) {
    return outer && outer->start <= inner.start && inner.end <= outer->end;
}

} // namespace

JsonReader::JsonReader(std::optional<fl::filesystem::path> path, const JsonValue& root)
    : path(std::move(path)), root(root) {}

JsonReaderValue<JsonValue> JsonReader::getRoot() {
    return {this, root, root};
}

void JsonReader::recordValueIssue(const JsonValue& value, std::shared_ptr<resource_core::BaseMsgID> message) {
    issues.push_back(makeIssue(path, value.getSpan(), std::move(message)));
}

void JsonReader::recordFieldIssue(const JsonField& field, std::shared_ptr<resource_core::BaseMsgID> message) {
    issues.push_back(makeIssue(path, field.nameSpan, std::move(message)));
}

std::u16string JsonReader::getName(const JsonValue& value) const {
    std::u16string name;
    if (!value.getSpan()) {
        return name;
    }
    const JsonSpan wanted = *value.getSpan();
    JsonValue current = root;
    while (current.getKind() == JsonValue::ObjectKind && current.getSpan() != wanted) {
        const JsonObject object = current.getObject();
        const auto& fields = object.viewFields();
        const auto found = std::find_if(fields.begin(), fields.end(), [&](const auto& field) {
            return contains(field.second.value.getSpan(), wanted);
        });
        if (found == fields.end()) {
            break;
        }
        name += (name.empty() ? u"" : u".") + found->first;
        current = found->second.value;
    }
    return name;
}

} // namespace ca::utils
