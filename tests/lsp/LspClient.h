#pragma once

#include "files/FileSystem.h"
#include "lsp/Server.h"
#include "support/TemporaryFolder.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Runs jobs when the test says so; with `isPatient` off at once.
class ScriptedWorker : public ombrel::lsp::Worker {
public:
    void post(ombrel::lsp::Lane, ombrel::lsp::Urgency, std::function<void()> job) override {
        jobs.push_back(std::move(job));
        if (!isPatient) {
            runAll();
        }
    }

    void runAll() {
        while (!jobs.empty()) {
            const auto job = std::move(jobs.front());
            jobs.pop_front();
            job();
        }
    }

    bool isPatient = false;

private:
    std::deque<std::function<void()>> jobs;
};

/// A client of a server in the same process, with a folder for files.
class LspClient {
public:
    using Json = ombrel::lsp::Json;

    LspClient() {
        auto owned = std::make_unique<ScriptedWorker>();
        worker = owned.get();
        server = std::make_unique<ombrel::lsp::Server>(
            [this](std::string_view body) { sent.push_back(Json::parse(body)); }, disk, std::move(owned));
    }

    void initialize(const Json& capabilities = Json::object(), const Json& settings = {}) {
        request("initialize", {{"capabilities", capabilities},
                               {"initializationOptions", settings},
                               {"rootUri", "file://" + folder.getPath().string()}});
        notify("initialized", Json::object());
    }

    std::string getUri(const std::string& name) const {
        return "file://" + (folder.getPath() / name).string();
    }

    Json makeParams(const std::string& name, Json params = Json::object()) const {
        params["textDocument"] = {{"uri", getUri(name)}};
        return params;
    }

    void open(const std::string& name, const std::string& text) {
        const Json item = {{"uri", getUri(name)}, {"languageId", "ombrel"}, {"version", 1}, {"text", text}};
        notify("textDocument/didOpen", {{"textDocument", item}});
    }

    void change(const std::string& name, const Json& version, const Json& changes) {
        notify("textDocument/didChange", {{"textDocument", {{"uri", getUri(name)}, {"version", version}}},
                                          {"contentChanges", changes}});
    }

    void notify(const std::string& method, const Json& params) {
        server->step(Json{{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}.dump());
    }

    /// The response, whole; null if there is none yet.
    Json request(const std::string& method, const Json& params) {
        const int id = ++lastId;
        server->step(Json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}.dump());
        return findResponse(id);
    }

    /// The result of a request about a document.
    Json ask(const std::string& method, const std::string& name, Json params = Json::object()) {
        const Json response = request(method, makeParams(name, std::move(params)));
        return response.contains("result") ? response["result"] : response;
    }

    Json findResponse(int id) const {
        for (const Json& message : sent) {
            if (!message.contains("method") && message.value("id", Json()) == id) {
                return message;
            }
        }
        return {};
    }

    /// The parameters of the last message with this method; null if there is none.
    Json findLast(const std::string& method) const {
        for (auto message = sent.rbegin(); message != sent.rend(); ++message) {
            if (message->value("method", "") == method) {
                return (*message)["params"];
            }
        }
        return {};
    }

    TemporaryFolder folder;
    ombrel::DiskFileSystem disk;
    std::vector<Json> sent;
    int lastId = 0;
    ScriptedWorker* worker = nullptr;
    std::unique_ptr<ombrel::lsp::Server> server;
};
