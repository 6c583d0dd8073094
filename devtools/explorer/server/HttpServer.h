#pragma once

#include "explorer/server/Access.h"
#include "explorer/server/ConnectionTable.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ombrel {

/// The answer to a request that was let through.
struct HttpAnswer {
    int status = 200;
    std::string type = "application/json";
    std::string body;
};

/// Header fields that every answer has.
using HeaderFields = std::vector<std::pair<std::string, std::string>>;

/// A server for one page on the loopback interface. It serves a fixed table of paths and nothing else, and
/// checks each request's head before it reads a body or looks at the path.
///
/// Each connection has a thread; see ConnectionTable for what happens when there are many.
class HttpServer {
public:
    /// `clientSocket` can be watched to find out that the client has gone.
    using Handler = std::function<HttpAnswer(const std::string& body, int clientSocket)>;

    HttpServer(std::string token, HeaderFields fields);
    ~HttpServer();

    /// Before run() only.
    void addResource(const std::string& path, HttpAnswer answer);
    void addOperation(const std::string& method, const std::string& path, Handler handler);

    /// Listens on 127.0.0.1 and, where there is IPv6, on ::1. 0 is any free port. Returns a sentence if that
    /// fails, and nothing otherwise.
    std::string bind(std::uint16_t port);
    std::uint16_t getPort() const { return rules.port; }

    /// Serves until stop() is called, which may have been before. Not to be called twice.
    void run();
    /// From any thread, after bind().
    void stop();

private:
    class Listener;
    struct Entry;

    bool serveRequest(class Connection& connection, Listener& listener, std::string head);

    AccessRules rules;
    HeaderFields fields;
    std::map<std::string, Entry, std::less<>> entries;
    std::vector<std::unique_ptr<Listener>> listeners;
    ConnectionTable connections;
    std::atomic<bool> isStopping = false;
};

} // namespace ombrel
