#pragma once

#include "lsp/Json.h"
#include "lsp/Position.h"

namespace ombrel::lsp {

/// What the client can do, as far as the server cares.
struct Client {
    PositionEncoding encoding = PositionEncoding::Utf16;
    bool pullsDiagnostics = false; ///< then none are pushed
    bool refreshesDiagnostics = false;
    bool showsRelatedInformation = false;
    bool showsSymbolTrees = false;
    bool registersWatchers = false;
    bool registersSettings = false;
    bool hasConfiguration = false; ///< answers workspace/configuration
    bool showsProgress = false;
    bool hasActionLiterals = false; ///< code actions instead of mere commands
};

/// Reads the `capabilities` of an initialize request. What is missing or has another type is absent.
Client readClient(const Json& capabilities);

/// The name of the encoding in the protocol.
const char* getName(PositionEncoding encoding);

} // namespace ombrel::lsp
