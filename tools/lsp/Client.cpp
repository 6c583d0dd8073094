#include "lsp/Client.h"

#include <optional>
#include <string>

namespace ombrel::lsp {

namespace {

const Json& find(const Json& json, const char* pointer) {
    static const Json none;
    const Json::json_pointer place(pointer);
    return json.contains(place) ? json.at(place) : none;
}

bool isTrue(const Json& json, const char* pointer) {
    return find(json, pointer) == true;
}

bool isThere(const Json& json, const char* pointer) {
    return find(json, pointer).is_object();
}

std::optional<PositionEncoding> findEncoding(const Json& name) {
    for (const auto encoding : {PositionEncoding::Utf8, PositionEncoding::Utf16, PositionEncoding::Utf32}) {
        if (name == getName(encoding)) {
            return encoding;
        }
    }
    return std::nullopt;
}

/// The first of the client's encodings that is known, since it lists them by preference.
PositionEncoding chooseEncoding(const Json& offered) {
    for (const Json& name : offered) {
        if (const auto encoding = findEncoding(name)) {
            return *encoding;
        }
    }
    return PositionEncoding::Utf16;
}

} // namespace

const char* getName(PositionEncoding encoding) {
    switch (encoding) {
    case PositionEncoding::Utf8:
        return "utf-8";
    case PositionEncoding::Utf16:
        break;
    case PositionEncoding::Utf32:
        return "utf-32";
    }
    return "utf-16";
}

Client readClient(const Json& json) {
    Client client;
    client.encoding = chooseEncoding(find(json, "/general/positionEncodings"));
    client.pullsDiagnostics = isThere(json, "/textDocument/diagnostic");
    client.refreshesDiagnostics = isTrue(json, "/workspace/diagnostics/refreshSupport");
    client.showsRelatedInformation = isTrue(json, "/textDocument/publishDiagnostics/relatedInformation") ||
                                     isTrue(json, "/textDocument/diagnostic/relatedInformation");
    client.showsSymbolTrees = isTrue(json, "/textDocument/documentSymbol/hierarchicalDocumentSymbolSupport");
    client.registersWatchers = isTrue(json, "/workspace/didChangeWatchedFiles/dynamicRegistration");
    client.registersSettings = isTrue(json, "/workspace/didChangeConfiguration/dynamicRegistration");
    client.hasConfiguration = isTrue(json, "/workspace/configuration");
    client.showsProgress = isTrue(json, "/window/workDoneProgress");
    client.hasActionLiterals = isThere(json, "/textDocument/codeAction/codeActionLiteralSupport");
    return client;
}

} // namespace ombrel::lsp
