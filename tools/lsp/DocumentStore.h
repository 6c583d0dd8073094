#pragma once

#include "lsp/Document.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ombrel::lsp {

/// The open documents, each with the newest text that the editor has told. All members may be called on
/// several threads at once.
class DocumentStore {
public:
    /// For documents that are opened from now on.
    void setEncoding(PositionEncoding encoding);

    /// Opens a document, or replaces an open one. `item` is a TextDocumentItem.
    DocumentPointer open(const Json& item);

    /// Makes the changes of a DidChangeTextDocumentParams. If they don't belong to the text that is known
    /// (the document isn't open, or its version isn't newer), the text is lost until it is sent as a whole: a
    /// guess would let the two texts drift apart. Null then.
    DocumentPointer change(const Json& params);

    /// The closed document; null if it wasn't open.
    DocumentPointer close(const std::string& uri);

    /// A message couldn't be read, and may have been a change of any document.
    void loseAll();

    /// Null if there is none, or if its text is lost.
    DocumentPointer find(const std::string& uri) const;

    /// Whether this is still what the editor has.
    bool isCurrent(const Document& document) const;

    std::vector<DocumentPointer> list() const;

private:
    struct Entry {
        DocumentPointer document;
        bool isLost = false;
    };

    PositionEncoding encoding = PositionEncoding::Utf16;
    std::uint64_t lastRevision = 0;
    std::unordered_map<std::string, Entry> entries; ///< by URI
    mutable std::mutex mutex;
};

} // namespace ombrel::lsp
