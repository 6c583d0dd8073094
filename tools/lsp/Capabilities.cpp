#include "lsp/Capabilities.h"

#include "lsp/OnTypeFormatting.h"
#include "lsp/SemanticTokens.h"

#include <string>

namespace ombrel::lsp {

namespace {

Json describeSynchronization() {
    constexpr int incremental = 2;
    return {{"openClose", true},
            {"change", incremental},
            {"willSaveWaitUntil", true},
            {"save", {{"includeText", false}}}};
}

} // namespace

Json describeServer(const Client& client) {
    const Json capabilities = {
        {"positionEncoding", getName(client.encoding)},
        {"textDocumentSync", describeSynchronization()},
        {"documentFormattingProvider", {{"workDoneProgress", true}}},
        {"documentRangeFormattingProvider", {{"rangesSupport", true}, {"workDoneProgress", true}}},
        {"documentOnTypeFormattingProvider", describeTypeTriggers()},
        {"semanticTokensProvider",
         {{"legend", describeTokenLegend()}, {"range", true}, {"full", {{"delta", true}}}}},
        {"foldingRangeProvider", true},
        {"documentSymbolProvider", true},
        {"codeActionProvider", {{"codeActionKinds", Json::array({"quickfix"})}}},
        {"completionProvider", {{"triggerCharacters", Json::array({"\""})}}},
        {"hoverProvider", true},
        {"diagnosticProvider",
         {{"identifier", "ombrel"}, {"interFileDependencies", false}, {"workspaceDiagnostics", false}}},
    };
    return {{"capabilities", capabilities},
            {"serverInfo", {{"name", "ombrel-lsp"}, {"version", OMBREL_VERSION}}}};
}

std::string findFolder(const Json& params) {
    const Json folders = params.value("workspaceFolders", Json());
    if (folders.is_array() && !folders.empty()) {
        return folders[0].at("uri");
    }
    const Json root = params.value("rootUri", Json());
    return root.is_string() ? root.get<std::string>() : std::string();
}

} // namespace ombrel::lsp
