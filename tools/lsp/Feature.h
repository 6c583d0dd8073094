#pragma once

#include "lsp/AnalysisCache.h"
#include "lsp/Client.h"
#include "lsp/Document.h"
#include "lsp/Json.h"
#include "lsp/Protocol.h"
#include "lsp/Workspace.h"

namespace ombrel::lsp {

class TokenHistory;

/// What a feature answers a question about a document with. A feature is a function from this to a result of
/// the protocol; it throws RequestError if there is none, and Json::exception for malformed parameters. It
/// runs on any thread.
struct Question {
    DocumentPointer pointer;
    const Json& params;
    const Client& client;
    const Workspace& workspace;
    AnalysisCache& analyses;
    TokenHistory& tokenHistory;

    const Document& getDocument() const { return *pointer; }
    bool isAboutSource() const { return pointer->kind == DocumentKind::Source; }
    AnalysisPointer analyze() const { return analyses.get(pointer); }
};

} // namespace ombrel::lsp
