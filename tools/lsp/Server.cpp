// What a message asks for is done at one of two places. Everything that only changes what the server knows (a
// document, a setting, a request that is cancelled) is done at once, on the thread that reads messages.
// Everything that reads a text is a feature: a function of a question, which runs on the worker.
//
//     step ─► handleMessage ─► a handler of the dispatcher
//                                 didChange ────► documents, and later publish() on the worker
//                                 formatting ───► answer() on the worker ─► formatDocument(question)
//
// Documents never change; a change makes a new one. So a feature can read while the next change comes in, and
// afterwards one comparison tells whether its answer is out of date.

#include "lsp/Server.h"

#include "lsp/Capabilities.h"
#include "lsp/CodeActions.h"
#include "lsp/Diagnostics.h"
#include "lsp/FoldingRanges.h"
#include "lsp/Formatting.h"
#include "lsp/OnTypeFormatting.h"
#include "lsp/OptionsFileSupport.h"
#include "lsp/SemanticTokens.h"
#include "lsp/Symbols.h"
#include "lsp/Uri.h"
#include "text/TextEncoding.h"

#include <exception>
#include <new>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

constexpr std::size_t largestQuickText = 1 << 19; // 16-bit characters

/// Ids are numbers or strings.
bool isId(const Json& id) {
    return id.is_number_integer() || id.is_string();
}

const Json& getParams(const Json& message) {
    static const Json none = Json::object();
    const auto params = message.find("params");
    return params == message.end() || params->is_null() ? none : *params;
}

/// ombrel/options: the options that apply to a document, and where each comes from, as text for people.
Json explainOptions(const Question& question) {
    const Json options = question.params.value("options", Json::object());
    return {{"text", question.workspace.explain(question.getDocument(), readFormattingOptions(options))}};
}

std::string getTitle(const Document& document) {
    const std::size_t slash = document.uri.rfind('/');
    return "Ombrel: " + document.uri.substr(slash == std::string::npos ? 0 : slash + 1);
}

std::string getUri(const Json& params) {
    return params.at("textDocument").at("uri");
}

/// ombrel/text: the text as the server has it. If it isn't what the editor shows, one of them has a fault.
Json showText(const Question& question) {
    return {{"text", encodeLossy(question.getDocument().text)}};
}

} // namespace

Server::Server(Connection::Send send, FileSystem& files, std::unique_ptr<Worker> worker, Hooks hooks)
    : connection(std::move(send)), hooks(std::move(hooks)), workspace(files), watch(connection),
      progress(connection, this->hooks.progressDelay), worker(std::move(worker)) {
    addLifeCycle();
    addSynchronization();
    addFeatures();
}

Server::~Server() = default;

void Server::step(std::string body) {
    const auto message = parseMessage(std::move(body));
    if (!message) {
        documents.loseAll(); // it may have been a change
        reportFault(ErrorCode::ParseError, message.error());
    } else if (message->is_array()) {
        reportFault(ErrorCode::InvalidRequest, "batches are not supported");
    } else {
        handleMessage(*message);
    }
}

void Server::trace(const std::string& method, std::chrono::steady_clock::time_point start) {
    if (isTracing) {
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        connection.notify("$/logTrace",
                          {{"message", fmt::format("{} took {:.1f} ms", method, time.count())}});
    }
}

void Server::reportFault(ErrorCode code, const std::string& text) {
    connection.refuse(Json(), code, text);
}

void Server::handleMessage(const Json& message) {
    if (!message.is_object() || message.value("jsonrpc", Json()) != "2.0") {
        reportFault(ErrorCode::InvalidRequest, "not a message of JSON-RPC 2.0");
        return;
    }
    const auto id = message.find("id");
    const auto method = message.find("method");
    if (method == message.end() && id != message.end()) {
        connection.handleResponse(message);
    } else if (method == message.end() || !method->is_string() || (id != message.end() && !isId(*id))) {
        connection.refuse(id != message.end() && isId(*id) ? *id : Json(), ErrorCode::InvalidRequest,
                          "neither a request nor a notification");
    } else if (id == message.end()) {
        handleNotification(*method, getParams(message));
    } else {
        handleRequest(*id, *method, getParams(message));
    }
}

void Server::handleRequest(const Json& id, const std::string& method, const Json& params) {
    try {
        const auto* handler = dispatcher.findRequest(method);
        if (state == State::Created && method != "initialize") {
            throw RequestError(ErrorCode::ServerNotInitialized, "the first request has to be initialize");
        }
        if (state == State::ShutDown) {
            throw RequestError(ErrorCode::InvalidRequest, "the server is shut down");
        }
        if (handler == nullptr) {
            throw RequestError(ErrorCode::MethodNotFound, fmt::format("there is no method {}", method));
        }
        (*handler)(id, params);
    } catch (const RequestError& error) {
        connection.refuse(id, error.code, error.what());
    } catch (const Json::exception& error) {
        connection.refuse(id, ErrorCode::InvalidParams, error.what());
    }
}

/// Nobody can be told about a notification's faults.
void Server::handleNotification(const std::string& method, const Json& params) {
    const auto* handler = dispatcher.findNotification(method);
    if (handler == nullptr || (state != State::Initialized && method != "exit")) {
        return;
    }
    try {
        (*handler)(params);
    } catch (const Json::exception&) {
        if (method.starts_with("textDocument/did")) {
            documents.loseAll();
        }
    }
}

void Server::addLifeCycle() {
    dispatcher.onRequest("initialize", [this](const Json& id, const Json& params) {
        if (state != State::Created) {
            throw RequestError(ErrorCode::InvalidRequest, "the server is initialized already");
        }
        connection.respond(id, initialize(params));
    });
    dispatcher.onRequest("shutdown", [this](const Json& id, const Json&) {
        state = State::ShutDown;
        connection.respond(id, Json());
    });
    dispatcher.onNotification("exit", [this](const Json&) { exitStatus = state == State::ShutDown ? 0 : 1; });
    dispatcher.onNotification("initialized", [this](const Json&) { startWork(); });
    dispatcher.onNotification("$/cancelRequest", [this](const Json& params) {
        const Json& id = params.at("id");
        if (pending.cancel(id)) {
            connection.refuse(id, ErrorCode::RequestCancelled, "cancelled");
        }
    });
    dispatcher.onNotification("$/setTrace",
                              [this](const Json& params) { isTracing = params.at("value") != "off"; });
    dispatcher.onNotification("workspace/didChangeConfiguration", [this](const Json& params) {
        const Json settings = params.value("settings", Json());
        if (settings.is_object() && settings.contains("ombrel")) {
            applySettings(settings["ombrel"]);
        } else {
            requestConfiguration();
        }
    });
    dispatcher.onNotification("workspace/didChangeWatchedFiles",
                              [this](const Json&) { refreshDiagnostics(); });
}

Json Server::initialize(const Json& params) {
    client = readClient(params.value("capabilities", Json()));
    documents.setEncoding(client.encoding);
    progress.setClientCanCreate(client.showsProgress);
    isTracing = params.value("trace", "off") != "off";
    if (const auto folder = getPath(findFolder(params))) {
        workspace.setFolder(*folder);
    }
    workspace.setSettings(readSettings(params.value("initializationOptions", Json())));
    if (const Json processId = params.value("processId", Json());
        processId.is_number_integer() && hooks.watchParent) {
        hooks.watchParent(processId);
    }
    state = State::Initialized;
    return describeServer(client);
}

void Server::startWork() {
    showProblems(*workspace.getSettings());
    watch.start(client);
    requestConfiguration();
}

void Server::requestConfiguration() {
    if (!client.hasConfiguration) {
        return;
    }
    const Json items = Json::array({{{"section", "ombrel"}}});
    connection.request("workspace/configuration", {{"items", items}}, [this](const Json* result) {
        if (result != nullptr && result->is_array() && !result->empty() && !result->at(0).is_null()) {
            applySettings(result->at(0));
        }
    });
}

void Server::applySettings(const Json& json) {
    workspace.setSettings(readSettings(json));
    showProblems(*workspace.getSettings());
    refreshDiagnostics();
}

void Server::showProblems(const Settings& settings) {
    constexpr int warning = 2; // MessageType
    for (const Problem& problem : settings.problems) {
        connection.notify("window/showMessage", {{"type", warning}, {"message", problem.text}});
    }
}

void Server::addSynchronization() {
    dispatcher.onNotification("textDocument/didOpen", [this](const Json& params) {
        publishLater(*documents.open(params.at("textDocument")));
    });
    dispatcher.onNotification("textDocument/didChange", [this](const Json& params) {
        if (const DocumentPointer document = documents.change(params)) {
            publishLater(*document);
        }
    });
    dispatcher.onNotification("textDocument/didSave", [this](const Json& params) {
        const DocumentPointer document = documents.find(getUri(params));
        if (document && document->kind == DocumentKind::OptionsFile) {
            refreshDiagnostics(); // of the sources that it is for, also if the client watches no files
        }
    });
    dispatcher.onNotification("textDocument/didClose",
                              [this](const Json& params) { closeDocument(getUri(params)); });
}

void Server::addFeatures() {
    addFeature("textDocument/formatting", formatDocument);
    addFeature("textDocument/rangeFormatting", formatRange);
    addFeature("textDocument/rangesFormatting", formatRanges);
    addFeature("textDocument/onTypeFormatting", formatOnType);
    addFeature("textDocument/willSaveWaitUntil", formatBeforeSaving);
    addFeature("ombrel/text", showText);
    addFeature("textDocument/diagnostic", reportDiagnostics);
    addFeature("textDocument/semanticTokens/full", findTokens);
    addFeature("textDocument/semanticTokens/full/delta", findTokenChanges);
    addFeature("textDocument/semanticTokens/range", findTokensInRange);
    addFeature("textDocument/foldingRange", findFoldingRanges);
    addFeature("textDocument/documentSymbol", findSymbols);
    addFeature("textDocument/codeAction", findActions);
    addFeature("textDocument/completion", completeOptions);
    addFeature("textDocument/hover", describeOption);
    addFeature("ombrel/options", explainOptions);
}

void Server::addFeature(const std::string& method, Feature feature) {
    dispatcher.onRequest(method, [this, method, feature](const Json& id, const Json& params) {
        const DocumentPointer document = documents.find(getUri(params));
        if (!document) {
            throw RequestError(ErrorCode::InvalidParams,
                               "this document isn't open, or its text has to be sent again as a whole");
        }
        const auto ticket =
            pending.start(id, progress.start(getTitle(*document), params.value("workDoneToken", Json())));
        if (!ticket) {
            throw RequestError(ErrorCode::InvalidRequest, "a request with this id has no answer yet");
        }
        worker->post(chooseLane(*document), Urgency::Request,
                     [this, id, method, feature, params, document, ticket = *ticket] {
                         const auto start = std::chrono::steady_clock::now();
                         answer(id, feature, params, document, ticket);
                         finishJob(*document);
                         trace(method, start);
                     });
    });
}

Lane Server::chooseLane(const Document& document) {
    return document.text.size() <= largestQuickText ? Lane::Quick : Lane::Large;
}

Question Server::ask(const DocumentPointer& document, const Json& params) {
    return {document, params, client, workspace, analyses, tokenHistory};
}

void Server::answer(const Json& id, Feature feature, const Json& params, const DocumentPointer& document,
                    PendingRequests::Ticket ticket) {
    const auto refuse = [&](ErrorCode code, const std::string& text) {
        if (pending.finish(id, ticket)) {
            connection.refuse(id, code, text);
        }
    };
    if (!pending.isPending(id, ticket)) {
        return;
    }
    try {
        Json result = documents.isCurrent(*document) ? feature(ask(document, params)) : Json();
        if (!documents.isCurrent(*document)) {
            refuse(ErrorCode::ContentModified, "the document has changed");
        } else if (pending.finish(id, ticket)) {
            connection.respond(id, std::move(result));
        }
    } catch (const RequestError& error) {
        refuse(error.code, error.what());
    } catch (const Json::exception& error) {
        refuse(ErrorCode::InvalidParams, error.what());
    } catch (const std::bad_alloc&) {
        refuse(ErrorCode::InternalError, "not enough memory for this text");
    } catch (const std::exception& error) {
        refuse(ErrorCode::InternalError, error.what());
    }
}

/// However many changes come before the job runs, it runs once, on the newest text.
void Server::publishLater(const Document& document) {
    if (client.pullsDiagnostics) {
        return;
    }
    const std::string& uri = document.uri;
    {
        const std::lock_guard guard(mutex);
        if (!unpublished.insert(uri).second) {
            return;
        }
    }
    worker->post(chooseLane(document), Urgency::Background, [this, uri] { publish(uri); });
}

void Server::publish(const std::string& uri) {
    {
        const std::lock_guard guard(mutex);
        unpublished.erase(uri);
    }
    const DocumentPointer document = documents.find(uri);
    if (!document) {
        return;
    }
    try {
        static const Json none = Json::object();
        const auto work = progress.start(getTitle(*document), Json());
        Json list = makeDiagnostics(ask(document, none));
        const std::lock_guard guard(publishing);
        if (documents.isCurrent(*document)) {
            sendDiagnostics(uri, document->version, std::move(list));
        }
    } catch (const std::exception& error) { // there is nobody to answer
        connection.notify("window/logMessage",
                          {{"type", 1}, {"message", fmt::format("no diagnostics: {}", error.what())}});
    }
    finishJob(*document);
}

/// Options files may have been read for the first time, and the document may have been closed in the
/// meantime.
void Server::finishJob(const Document& document) {
    watch.add(client, workspace.getOptionsFiles());
    if (!documents.isCurrent(document)) {
        forget(document);
    }
}

void Server::forget(const Document& document) {
    analyses.forget(document);
    tokenHistory.forget(document.uri);
}

void Server::sendDiagnostics(const std::string& uri, const Json& version, Json list) {
    Json params = {{"uri", uri}, {"diagnostics", std::move(list)}};
    if (!version.is_null()) {
        params["version"] = version;
    }
    connection.notify("textDocument/publishDiagnostics", std::move(params));
}

void Server::refreshDiagnostics() {
    if (client.pullsDiagnostics) {
        if (client.refreshesDiagnostics) {
            connection.request("workspace/diagnostic/refresh", Json());
        }
        return;
    }
    for (const DocumentPointer& document : documents.list()) {
        publishLater(*document);
    }
}

void Server::closeDocument(const std::string& uri) {
    const std::lock_guard guard(publishing); // or diagnostics that are ready could still come after this
    DocumentPointer document = documents.close(uri);
    if (!document) {
        return;
    }
    forget(*document);
    if (!client.pullsDiagnostics) {
        sendDiagnostics(uri, Json(), Json::array());
    }
    closedCharacters += document->text.size();
    if (hooks.releaseMemory && (documents.list().empty() || closedCharacters > largestQuickText)) {
        closedCharacters = 0;
        releaseMemory(std::move(document));
    }
}

/// After the jobs that still use the document, and after its own memory is free.
void Server::releaseMemory(DocumentPointer document) {
    const Lane lane = chooseLane(*document);
    worker->post(lane, Urgency::Background, [this, document = std::move(document)]() mutable {
        document.reset();
        hooks.releaseMemory();
    });
}

} // namespace ombrel::lsp
