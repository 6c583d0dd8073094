#pragma once

#include "files/FileSystem.h"
#include "lsp/AnalysisCache.h"
#include "lsp/Client.h"
#include "lsp/Connection.h"
#include "lsp/Dispatcher.h"
#include "lsp/DocumentStore.h"
#include "lsp/Feature.h"
#include "lsp/PendingRequests.h"
#include "lsp/Progress.h"
#include "lsp/TokenHistory.h"
#include "lsp/Watch.h"
#include "lsp/Worker.h"
#include "lsp/Workspace.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_set>

namespace ombrel::lsp {

/// The language server: messages in, messages out. It knows neither streams nor processes.
///
/// One thread calls step(). Changes of documents are made there, in their order; what takes time runs on the
/// worker, on the text as it was when the request came. If the text has changed by the time that an answer is
/// there, the answer is ContentModified.
class Server {
public:
    /// What the server needs from the process that it runs in. All may be empty.
    struct Hooks {
        std::function<void(std::int64_t processId)> watchParent; ///< of the editor, as initialize tells it
        std::function<void()> releaseMemory;                     ///< much of it is unused now
        /// Of what the editor shows; if empty, it shows nothing and the server has no thread for it.
        std::optional<std::chrono::milliseconds> progressDelay = std::chrono::seconds(1);
    };

    /// `files` has to outlive the server. `send` is called by any thread, but not by two at once.
    Server(Connection::Send send, FileSystem& files, std::unique_ptr<Worker> worker, Hooks hooks);
    Server(Connection::Send send, FileSystem& files, std::unique_ptr<Worker> worker)
        : Server(std::move(send), files, std::move(worker), Hooks()) {}
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();

    /// Handles the body of one message. Throws nothing but std::bad_alloc.
    void step(std::string body);

    /// Reports something in the stream that is no message.
    void reportFault(ErrorCode code, const std::string& text);

    /// Part of the stream was not read: no text is known until it is sent again as a whole.
    void loseTexts() { documents.loseAll(); }

    /// Set once `exit` was received: 0 after a shutdown, 1 without one.
    std::optional<int> getExitStatus() const { return exitStatus; }

private:
    using Feature = Json (*)(const Question&);
    enum class State { Created, Initialized, ShutDown };

    void addLifeCycle();
    void addSynchronization();
    void addFeatures();
    void addFeature(const std::string& method, Feature feature);

    void handleMessage(const Json& message);
    void handleRequest(const Json& id, const std::string& method, const Json& params);
    void handleNotification(const std::string& method, const Json& params);

    Json initialize(const Json& params);
    void startWork();
    void requestConfiguration();
    void applySettings(const Json& json);
    void showProblems(const Settings& settings);

    void answer(const Json& id, Feature feature, const Json& params, const DocumentPointer& document,
                PendingRequests::Ticket ticket);
    Question ask(const DocumentPointer& document, const Json& params);
    void trace(const std::string& method, std::chrono::steady_clock::time_point start);
    static Lane chooseLane(const Document& document);

    void publishLater(const Document& document);
    void publish(const std::string& uri);
    void sendDiagnostics(const std::string& uri, const Json& version, Json list);
    void refreshDiagnostics();
    void closeDocument(const std::string& uri);
    void finishJob(const Document& document);
    void forget(const Document& document);
    void releaseMemory(DocumentPointer document);

    Connection connection;
    Hooks hooks;
    Dispatcher dispatcher;
    State state = State::Created;
    std::optional<int> exitStatus;
    Client client;
    DocumentStore documents;
    Workspace workspace;
    AnalysisCache analyses;
    TokenHistory tokenHistory;
    Watch watch;
    Progress progress;
    std::atomic<bool> isTracing = false;
    PendingRequests pending;
    std::size_t closedCharacters = 0; ///< of documents, since memory was released
    std::mutex publishing;            ///< held while diagnostics of a document that is open are sent
    std::mutex mutex;                 ///< guards `unpublished`
    std::unordered_set<std::string> unpublished; ///< documents whose diagnostics are going to be made
    std::unique_ptr<Worker> worker;              ///< last, so that its jobs end before what they use
};

} // namespace ombrel::lsp
