// cpp-httplib listens, reads requests, calls handlers and writes answers. It accepts more than this server
// wants to, has no limit for the length of a head, and its threads can all be made to wait by clients that
// send nothing. So a connection is read here up to the end of a head, which is checked first. What goes on to
// the library is a new head, written from what was understood, followed by a body of known length.

#include "explorer/server/HttpServer.h"

#include "explorer/server/Connection.h"

#include <thread>
#include <utility>

#include <fmt/format.h>
#include <httplib.h>
#include <nlohmann/json.hpp>
#include <sys/socket.h>

namespace ombrel {

namespace {

constexpr std::size_t maximalConnections = 64;
constexpr int listenBacklog = 512;
constexpr int requestsPerConnection = 1000;

/// The field that tells a handler its client's socket. No client can send it: heads are rewritten.
constexpr const char* socketField = "X-Client-Socket";

const char* getStatusWords(int status) {
    switch (status) {
    case 400:
        return "Bad Request";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 408:
        return "Request Timeout";
    case 413:
        return "Content Too Large";
    case 414:
        return "URI Too Long";
    case 415:
        return "Unsupported Media Type";
    case 431:
        return "Request Header Fields Too Large";
    default:
        return "Refused";
    }
}

std::string makeErrorBody(const std::string& text) {
    return nlohmann::json{{"error", text}}.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void write(Connection& connection, const Refusal& refusal, const HeaderFields& fields) {
    const std::string body = makeErrorBody(refusal.text);
    std::string answer = fmt::format(
        "HTTP/1.1 {} {}\r\nContent-Type: application/json\r\nContent-Length: {}\r\nConnection: close\r\n",
        refusal.status, getStatusWords(refusal.status), body.size());
    for (const auto& [name, value] : fields) {
        answer += fmt::format("{}: {}\r\n", name, value);
    }
    answer += "\r\n" + body;
    connection.write(answer.data(), answer.size());
}

/// The head as the library gets it.
std::string rewriteHead(const RequestHead& head, int socket) {
    std::string text = fmt::format("{} {} HTTP/1.1\r\nHost: {}\r\n{}: {}\r\n", head.method, head.target,
                                   head.get("host"), socketField, socket);
    if (head.method == "POST") {
        text += fmt::format("Content-Type: application/json\r\nContent-Length: {}\r\n", head.bodyLength);
    }
    if (head.get("expect") == "100-continue") {
        text += "Expect: 100-continue\r\n";
    }
    return text + (head.isKeptAlive ? "\r\n" : "Connection: close\r\n\r\n");
}

/// A thread for each connection, as many as the table has room for.
class ConnectionThreads : public httplib::TaskQueue {
public:
    explicit ConnectionThreads(ConnectionTable& table) : table(table) {}

    void enqueue(std::function<void()> task) override {
        const bool hasRoom = table.reserve();
        if (!hasRoom) {
            task(); // finds its socket shut down
            return;
        }
        std::thread([this, task = std::move(task)] {
            task();
            table.release();
        }).detach();
    }

    void shutdown() override {
        table.shutDown();
        table.waitForAll();
    }

private:
    ConnectionTable& table;
};

} // namespace

struct HttpServer::Entry {
    std::string method;
    bool needsToken;
    Handler handler;
};

/// The library's server for one address.
class HttpServer::Listener : public httplib::Server {
public:
    explicit Listener(HttpServer& owner) : owner(owner) {
        new_task_queue = [&owner] { return new ConnectionThreads(owner.connections); };
        set_socket_options([](socket_t socket) {
            const int on = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        });
        set_payload_max_length(maximalBodyLength);
        set_tcp_nodelay(true);
        httplib::Headers headers;
        for (const auto& [name, value] : owner.fields) {
            headers.emplace(name, value);
        }
        set_default_headers(std::move(headers));
        set_keep_alive_timeout(static_cast<time_t>(Connection::idleTime.count()));
    }

    /// The library's own queue of connections that nobody has accepted yet is shorter than a page with its
    /// assets.
    void lengthenBacklog() { ::listen(svr_sock_, listenBacklog); }

    /// Also before listen_after_bind(), or while it begins: the library's own stop() would do nothing then.
    void end() { ::shutdown(svr_sock_, SHUT_RDWR); }

    void addEntry(const std::string& path, const Entry& entry) {
        const auto handle = [&entry](const httplib::Request& request, httplib::Response& response) {
            HttpAnswer answer = entry.handler(request.body, std::stoi(request.get_header_value(socketField)));
            response.status = answer.status;
            response.body = std::move(answer.body);
            response.set_header("Content-Type", answer.type);
        };
        if (entry.method == "POST") {
            Post(path, handle);
        } else {
            Get(path, handle);
        }
    }

    bool process(Connection& connection, bool closes) {
        bool isClosed = false;
        return process_request(connection, closes, isClosed, nullptr) && !isClosed;
    }

private:
    bool process_and_close_socket(socket_t socket) override {
        Connection connection(socket, owner.connections);
        for (int i = 0; i < requestsPerConnection && !owner.isStopping; ++i) {
            auto head = connection.readHead();
            if (!head) {
                write(connection, head.error(), owner.fields);
                connection.drain();
                return false;
            }
            if (!*head || !owner.serveRequest(connection, *this, **std::move(head))) {
                break;
            }
        }
        return true;
    }

    HttpServer& owner;
};

HttpServer::HttpServer(std::string token, HeaderFields fields)
    : rules{0, std::move(token)}, fields(std::move(fields)), connections(maximalConnections) {}

HttpServer::~HttpServer() = default;

void HttpServer::addResource(const std::string& path, HttpAnswer answer) {
    entries[path] = {"GET", false, [answer = std::move(answer)](const std::string&, int) { return answer; }};
}

void HttpServer::addOperation(const std::string& method, const std::string& path, Handler handler) {
    entries[path] = {method, true, std::move(handler)};
}

std::string HttpServer::bind(std::uint16_t port) {
    auto first = std::make_unique<Listener>(*this);
    const int bound = port == 0 ? first->bind_to_any_port("127.0.0.1")
                                : (first->bind_to_port("127.0.0.1", port) ? port : -1);
    if (bound <= 0) {
        return port == 0 ? std::string("can't listen on 127.0.0.1")
                         : fmt::format("can't listen on port {} of 127.0.0.1: is it in use?", port);
    }
    rules.port = static_cast<std::uint16_t>(bound);
    auto second = std::make_unique<Listener>(*this);
    listeners.push_back(std::move(first));
    if (second->bind_to_port("::1", bound)) {
        listeners.push_back(std::move(second));
    }
    for (const auto& listener : listeners) {
        listener->lengthenBacklog();
    }
    return {};
}

void HttpServer::run() {
    std::vector<std::thread> threads;
    for (const auto& listener : listeners) {
        for (const auto& [path, entry] : entries) {
            listener->addEntry(path, entry);
        }
        threads.emplace_back([&listener] { listener->listen_after_bind(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void HttpServer::stop() {
    isStopping = true;
    for (const auto& listener : listeners) {
        listener->end();
    }
    connections.shutDown();
}

/// False if the connection is of no more use.
bool HttpServer::serveRequest(Connection& connection, Listener& listener, std::string bytes) {
    const auto head = parseHead(bytes);
    std::optional<Refusal> refusal;
    if (!head) {
        refusal = head.error();
    } else {
        const auto entry = entries.find(head->target);
        const bool isKnown = entry != entries.end();
        const Route route =
            isKnown ? Route{entry->second.method, entry->second.needsToken} : Route{"", false};
        refusal = checkAccess(*head, isKnown ? &route : nullptr, rules);
    }
    if (refusal) {
        write(connection, *refusal, fields);
        connection.drain();
        return false;
    }
    connection.putBack(rewriteHead(*head, connection.socket()));
    const bool isOpen = listener.process(connection, !head->isKeptAlive);
    return isOpen && head->isKeptAlive && !connection.isLate();
}

} // namespace ombrel
