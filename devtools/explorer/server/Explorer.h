#pragma once

#include "explorer/server/HttpServer.h"
#include "explorer/server/Presence.h"

#include <semaphore>
#include <string>

namespace ombrel {

/// The text that the page starts with.
struct StartText {
    std::string name; ///< empty: the page chooses
    std::string text; ///< UTF-8
};

/// The page and its operations:
///
///     POST /api/format, /api/dump    see Answers.h
///     GET  /api/schema               the JSON Schema of options files
///     GET  /api/start                {"version", "name", "text"}: the file that the program was started with
///     POST /api/presence             see Presence.h
class Explorer {
public:
    Explorer(std::string token, const StartText& start);

    HttpServer& getServer() { return server; }
    Presence& getPresence() { return presence; }

private:
    Explorer(std::string token, const StartText& start, const std::string& nonce);

    void addAssets(const std::string& nonce);
    void addOperations(const StartText& start);
    HttpAnswer answer(const char* operation, const std::string& body, int clientSocket);

    HttpServer server;
    Presence presence;
    std::counting_semaphore<> workers; ///< requests that may be worked on at the same time
};

} // namespace ombrel
