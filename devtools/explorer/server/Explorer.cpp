#include "explorer/server/Explorer.h"

#include "explorer/server/Assets.h"
#include "explorer/server/Worker.h"
#include "options/OptionsSchema.h"

#include <chrono>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

/// Requests that are worked on at the same time; others wait, and then give up.
constexpr std::ptrdiff_t workerCount = 6;

constexpr std::string_view noncePlace = "@nonce@";

/// No script, style or image but the program's own, no other page around this one, no text that becomes an
/// element. The nonce is for the style sheets that the editor component makes.
HeaderFields makeHeaderFields(const std::string& nonce) {
    return {
        {"Content-Security-Policy",
         fmt::format("default-src 'none'; script-src 'self'; style-src 'self' 'nonce-{}'; img-src 'self'; "
                     "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'; "
                     "require-trusted-types-for 'script'; trusted-types 'none'",
                     nonce)},
        {"X-Content-Type-Options", "nosniff"},
        {"X-Frame-Options", "DENY"},
        {"Referrer-Policy", "no-referrer"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Embedder-Policy", "require-corp"},
        {"Cache-Control", "no-store"}};
}

HttpAnswer makeError(int status, const std::string& text) {
    return {status, "application/json",
            nlohmann::json{{"error", text}}.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)};
}

HttpAnswer makeAnswer(WorkerResult result) {
    switch (result.kind) {
    case WorkerResult::Kind::Answer:
        return {200, "application/json", std::move(result.text)};
    case WorkerResult::Kind::BadRequest:
        return makeError(400, result.text);
    case WorkerResult::Kind::TooSlow:
        return makeError(503, fmt::format("this takes longer than {} seconds", maximalSeconds));
    case WorkerResult::Kind::TooLarge:
        return makeError(
            503, fmt::format("this needs more memory than the {} MiB of one request", maximalMemory >> 20));
    case WorkerResult::Kind::Abandoned:
        return makeError(503, "nobody waits for this any more");
    case WorkerResult::Kind::Failed:
        break;
    }
    return makeError(500, "the formatter failed: " + (result.text.empty() ? "it ended" : result.text));
}

} // namespace

Explorer::Explorer(std::string token, const StartText& start)
    : Explorer(std::move(token), start, makeToken()) {}

Explorer::Explorer(std::string token, const StartText& start, const std::string& nonce)
    : server(std::move(token), makeHeaderFields(nonce)), workers(workerCount) {
    addAssets(nonce);
    addOperations(start);
}

void Explorer::addAssets(const std::string& nonce) {
    for (const Asset& asset : getAssets()) {
        std::string content(asset.content);
        if (const std::size_t place = content.find(noncePlace); place != std::string::npos) {
            content.replace(place, noncePlace.size(), nonce);
        }
        server.addResource(std::string(asset.path), {200, std::string(asset.type), std::move(content)});
    }
}

void Explorer::addOperations(const StartText& start) {
    for (const char* operation : {"format", "dump"}) {
        server.addOperation("POST", fmt::format("/api/{}", operation),
                            [this, operation](const std::string& body, int clientSocket) {
                                return answer(operation, body, clientSocket);
                            });
    }
    const HttpAnswer schema{200, "application/json", makeOptionsSchema()};
    server.addOperation("GET", "/api/schema", [schema](const std::string&, int) { return schema; });
    const nlohmann::json startJson{{"version", OMBREL_VERSION}, {"name", start.name}, {"text", start.text}};
    const HttpAnswer startAnswer{200, "application/json", startJson.dump()};
    server.addOperation("GET", "/api/start", [startAnswer](const std::string&, int) { return startAnswer; });
    server.addOperation("POST", "/api/presence", [this](const std::string& body, int) {
        return presence.report(body) ? HttpAnswer{200, "application/json", "{}"}
                                     : makeError(400, "expected a page and whether it is open");
    });
}

HttpAnswer Explorer::answer(const char* operation, const std::string& body, int clientSocket) {
    if (!workers.try_acquire_for(std::chrono::seconds(maximalSeconds))) {
        return makeError(503, "too many requests are being worked on");
    }
    struct Release {
        std::counting_semaphore<>& workers;
        ~Release() { workers.release(); }
    } const release{workers};
    return makeAnswer(runWorker(operation, body, clientSocket));
}

} // namespace ombrel
