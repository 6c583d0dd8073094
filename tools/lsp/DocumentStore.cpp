#include "lsp/DocumentStore.h"

#include "lsp/Uri.h"
#include "options/OptionsResolver.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <utility>

namespace ombrel::lsp {

namespace {

/// The text of a message. A byte-order mark at its start is a character like any other.
std::u16string readText(const Json& json) {
    const auto& bytes = json.get_ref<const std::string&>();
    return (bytes.starts_with(byteOrderMark) ? u"\uFEFF" : u"") + decodeLossy(bytes);
}

DocumentKind findKind(const std::optional<std::string>& path, std::string_view language) {
    if (path && path->ends_with(std::string("/") + std::string(optionsFileName))) {
        return DocumentKind::OptionsFile;
    }
    const bool isSource = language == "ombrel" || (path && path->ends_with(".omb"));
    return isSource || language.empty() ? DocumentKind::Source : DocumentKind::Other;
}

bool isWhole(const Json& change) {
    const auto range = change.find("range");
    return range == change.end() || range->is_null();
}

/// A text and its lines while changes are made.
struct Draft {
    std::u16string text;
    LineIndex lines;

    void apply(const Json& change, PositionEncoding encoding) {
        std::u16string inserted = readText(change.at("text"));
        if (isWhole(change)) {
            text = std::move(inserted);
            lines = LineIndex(text);
            return;
        }
        const Range place = readRange(change.at("range"));
        const auto [begin, end] = std::minmax(
            {findOffset(text, lines, place.start, encoding), findOffset(text, lines, place.end, encoding)});
        text.replace(begin, end - begin, inserted);
        lines.update(text, begin, end - begin, inserted.size());
    }
};

} // namespace

void DocumentStore::setEncoding(PositionEncoding newEncoding) {
    const std::lock_guard guard(mutex);
    encoding = newEncoding;
}

DocumentPointer DocumentStore::open(const Json& item) {
    auto document = std::make_shared<Document>();
    document->uri = item.at("uri");
    document->path = getPath(document->uri);
    document->kind = findKind(document->path, item.value("languageId", ""));
    document->version = item.at("version");
    document->text = readText(item.at("text"));
    document->lines = LineIndex(document->text);
    const std::lock_guard guard(mutex);
    document->encoding = encoding;
    document->revision = ++lastRevision;
    entries[document->uri] = {document};
    return document;
}

DocumentPointer DocumentStore::change(const Json& params) {
    const Json& identifier = params.at("textDocument");
    const std::lock_guard guard(mutex);
    const auto found = entries.find(identifier.at("uri").get<std::string>());
    if (found == entries.end()) {
        return nullptr;
    }
    Entry& entry = found->second;
    const bool wasLost = std::exchange(entry.isLost, true); // until all changes are known to be good
    const Document& old = *entry.document;
    const Json& version = identifier.at("version");
    const Json& changes = params.at("contentChanges");
    const bool isNewer = version.is_null() || version.get<std::int64_t>() > old.version;
    const bool isKnown = !wasLost && isNewer;
    if (!isKnown && (changes.empty() || !isWhole(changes.front()))) {
        return nullptr;
    }
    Draft draft{old.text, old.lines};
    for (const Json& change : changes) {
        draft.apply(change, old.encoding);
    }
    const auto number = version.is_null() ? old.version + 1 : version.get<std::int64_t>();
    entry.document = std::make_shared<const Document>(
        Document{old.uri, old.path, old.kind, number, ++lastRevision, old.encoding, std::move(draft.text),
                 std::move(draft.lines)});
    entry.isLost = false;
    return entry.document;
}

DocumentPointer DocumentStore::close(const std::string& uri) {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(uri);
    if (found == entries.end()) {
        return nullptr;
    }
    DocumentPointer document = std::move(found->second.document);
    entries.erase(found);
    return document;
}

void DocumentStore::loseAll() {
    const std::lock_guard guard(mutex);
    for (auto& [uri, entry] : entries) {
        entry.isLost = true;
    }
}

DocumentPointer DocumentStore::find(const std::string& uri) const {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(uri);
    return found == entries.end() || found->second.isLost ? nullptr : found->second.document;
}

bool DocumentStore::isCurrent(const Document& document) const {
    const DocumentPointer newest = find(document.uri);
    return newest && newest->revision == document.revision;
}

std::vector<DocumentPointer> DocumentStore::list() const {
    const std::lock_guard guard(mutex);
    std::vector<DocumentPointer> documents;
    for (const auto& [uri, entry] : entries) {
        if (!entry.isLost) {
            documents.push_back(entry.document);
        }
    }
    return documents;
}

} // namespace ombrel::lsp
