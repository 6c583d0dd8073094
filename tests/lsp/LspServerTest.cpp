// The server's life and its errors, as messages in and messages out.

#include "LspClient.h"

#include "lsp/Position.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace ombrel;
using namespace ombrel::lsp;

int getErrorCode(const Json& message) {
    return message.contains("error") ? message["error"]["code"].get<int>() : 0;
}

TEST(LspServer, AnswersMalformedMessagesWithTheErrorTheyDeserve) {
    struct Row {
        std::string body;
        int code;
    };
    const std::vector<Row> rows = {
        {"{", -32700},
        {"", -32700},
        {R"({"id": 1e999})", -32700},
        {"[]", -32600},
        {R"([{"jsonrpc":"2.0","id":1,"method":"shutdown"}])", -32600},
        {"1", -32600},
        {"null", -32600},
        {R"({"id":1,"method":"shutdown"})", -32600},
        {R"({"jsonrpc":"2.0"})", -32600},
        {R"({"jsonrpc":"2.0","id":1,"method":2})", -32600},
        {R"({"jsonrpc":"2.0","id":{},"method":"shutdown"})", -32600},
        {R"({"jsonrpc":"2.0","id":1.5,"method":"shutdown"})", -32600},
        {R"({"jsonrpc":"2.0","id":"a","method":"nonsense"})", -32601},
        {R"({"jsonrpc":"2.0","id":1,"method":"$/nonsense"})", -32601},
        {R"({"jsonrpc":"2.0","id":1,"method":"initialize"})", -32600},
        {R"({"jsonrpc":"2.0","id":1,"method":"textDocument/formatting"})", -32602},
        {R"({"jsonrpc":"2.0","id":1,"method":"textDocument/formatting","params":[1]})", -32602},
        {R"({"jsonrpc":"2.0","id":1,"method":"textDocument/hover","params":{"textDocument":{"uri":"file:///a"}}})",
         -32602},
    };
    LspClient client;
    client.initialize();
    for (const Row& row : rows) {
        client.sent.clear();
        client.server->step(row.body);
        ASSERT_EQ(client.sent.size(), 1U) << row.body;
        EXPECT_EQ(getErrorCode(client.sent[0]), row.code) << row.body;
        EXPECT_EQ(client.sent[0]["jsonrpc"], "2.0");
        EXPECT_TRUE(client.sent[0].contains("id"));
    }
    client.sent.clear();
    client.server->step(R"({"jsonrpc":"2.0","method":"$/nonsense","params":{}})");
    client.server->step(R"({"jsonrpc":"2.0","id":77,"result":null})"); // nobody asked
    client.server->step(R"({"jsonrpc":"2.0","method":"textDocument/didOpen","params":3})");
    EXPECT_TRUE(client.sent.empty());
}

TEST(LspServer, LivesFromInitializeToExit) {
    LspClient client;
    EXPECT_EQ(getErrorCode(client.request("textDocument/formatting", {})), -32002);
    client.open("a.omb", "x");
    EXPECT_TRUE(client.findLast("textDocument/publishDiagnostics").is_null());
    client.initialize({{"general", {{"positionEncodings", {"utf-7", "utf-8", "utf-16"}}}}});
    EXPECT_EQ(client.findResponse(2)["result"]["capabilities"]["positionEncoding"], "utf-8");
    EXPECT_FALSE(client.server->getExitStatus());
    EXPECT_TRUE(client.request("shutdown", {}).at("result").is_null());
    EXPECT_EQ(getErrorCode(client.request("shutdown", {})), -32600);
    client.notify("exit", {});
    EXPECT_EQ(client.server->getExitStatus(), 0);

    LspClient hasty;
    hasty.notify("exit", {});
    EXPECT_EQ(hasty.server->getExitStatus(), 1);
}

TEST(LspServer, CancelsRequestsAndRefusesAnswersForTextThatHasChanged) {
    LspClient client;
    client.initialize();
    client.open("a.omb", "if a\nx\nend\n");
    client.worker->isPatient = true;
    const auto ask = [&] {
        client.request("textDocument/formatting", client.makeParams("a.omb", {{"options", Json::object()}}));
        return client.lastId;
    };
    const int cancelled = ask();
    client.notify("$/cancelRequest", {{"id", cancelled}});
    EXPECT_EQ(getErrorCode(client.findResponse(cancelled)), -32800);
    const int outdated = ask();
    --client.lastId;
    EXPECT_EQ(ask(), outdated); // the same id again
    EXPECT_EQ(getErrorCode(client.sent.back()), -32600);
    client.sent.clear();
    client.change("a.omb", 2, {{{"text", "if b\nx\nend\n"}}});
    const int current = ask();
    const int closed = ask();
    client.worker->runAll();
    EXPECT_EQ(getErrorCode(client.findResponse(outdated)), -32801);
    EXPECT_EQ(client.findResponse(current)["result"].size(), 1U);
    const auto count = [&](int id) {
        return std::count_if(client.sent.begin(), client.sent.end(),
                             [&](const Json& message) { return message.value("id", Json()) == id; });
    };
    EXPECT_EQ(count(cancelled), 0);
    EXPECT_EQ(count(closed), 1);
    const int late = ask();
    client.notify("textDocument/didClose", client.makeParams("a.omb"));
    client.worker->runAll();
    EXPECT_EQ(getErrorCode(client.findResponse(late)), -32801);
    EXPECT_EQ(client.findLast("textDocument/publishDiagnostics")["diagnostics"], Json::array());
}

/// The texts may only drift apart where both sides know it.
TEST(LspServer, AsksForTheWholeTextWhereItCannotKnowIt) {
    const Json edit = {
        {"range", {{"start", {{"line", 0}, {"character", 0}}}, {"end", {{"line", 0}, {"character", 1}}}}},
        {"text", " y"}};
    LspClient client;
    client.initialize();
    const auto isKnown = [&] {
        return client
            .request("textDocument/formatting", client.makeParams("a.omb", {{"options", Json::object()}}))
            .contains("result");
    };
    EXPECT_FALSE(isKnown());
    client.change("a.omb", 2, {edit}); // not open
    EXPECT_FALSE(isKnown());
    client.open("a.omb", "x\n");
    EXPECT_TRUE(isKnown());
    client.change("a.omb", 1, {edit}); // not newer
    EXPECT_FALSE(isKnown());
    client.change("a.omb", 5, {edit}); // of a text that isn't known
    EXPECT_FALSE(isKnown());
    client.change("a.omb", 6, {{{"text", "z\n"}}, edit});
    EXPECT_TRUE(isKnown());
    client.server->step("{\"jsonrpc\":\"2.0\",\"method\":\"textDocument/didChange\",\"params\":{\"\xFF\"}}");
    EXPECT_FALSE(isKnown());
    client.open("a.omb", "x\n");
    EXPECT_TRUE(isKnown());
    client.change("a.omb", 2, {{{"range", {{"start", {{"line", -1}, {"character", 0}}}}}, {"text", ""}}});
    EXPECT_FALSE(isKnown());
}

/// Random edits, with a line index and offsets that are computed from scratch as the model.
TEST(LspPositions, AreRightAfterEveryEditInEveryEncoding) {
    const std::u16string pieces[] = {u"a",  u"\n",         u"\r",      u"\r\n", u"é",
                                     u"漢", u"\U0001F600", u"e\u0301", u" "};
    std::mt19937 random(42);
    const auto choose = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (int script = 0; script < 200; ++script) {
        std::u16string text;
        LineIndex lines;
        for (int step = 0; step < 30; ++step) {
            const std::size_t offset = choose(text.size() + 1);
            const std::size_t removed = choose(2) == 0 ? 0 : choose(text.size() - offset + 1);
            std::u16string inserted;
            for (std::size_t i = choose(6); i > 0; --i) {
                inserted += pieces[choose(std::size(pieces))];
            }
            text.replace(offset, removed, inserted);
            lines.update(text, offset, removed, inserted.size());
            const LineIndex model(text);
            ASSERT_EQ(lines.getLineCount(), model.getLineCount());
            for (std::size_t i = 0; i < model.getLineCount(); ++i) {
                ASSERT_EQ(lines.getStart(i), model.getStart(i)) << i;
            }
        }
        for (const auto encoding :
             {PositionEncoding::Utf8, PositionEncoding::Utf16, PositionEncoding::Utf32}) {
            PositionFinder finder(text, lines, encoding);
            for (std::size_t offset = 0; offset <= text.size(); ++offset) {
                const bool isInPair = offset > 0 && offset < text.size() &&
                                      ((text[offset - 1] == u'\r' && text[offset] == u'\n') ||
                                       (text[offset] & 0xFC00) == 0xDC00);
                const Position place = finder.find(offset);
                if (isInPair) {
                    continue;
                }
                ASSERT_EQ(findOffset(text, lines, place, encoding), offset);
                const std::u16string start =
                    text.substr(lines.getStart(place.line), offset - lines.getStart(place.line));
                if (encoding == PositionEncoding::Utf8) {
                    ASSERT_EQ(place.character, encodeLossy(start).size());
                }
            }
            ASSERT_EQ(findOffset(text, lines, {9999, 0}, encoding), text.size());
            ASSERT_EQ(findOffset(text, lines, {0, 99999}, encoding), lines.getEnd(text, 0));
        }
    }
}

TEST(LspProgress, BeginsWithTheClientsConsentAndEndsWithTheWork) {
    std::mutex mutex;
    std::vector<Json> sent;
    Connection connection([&](std::string_view body) {
        const std::lock_guard guard(mutex);
        sent.push_back(Json::parse(body));
    });
    const auto waitFor = [&](std::size_t count) {
        for (bool isDone = false; !isDone; std::this_thread::yield()) {
            const std::lock_guard guard(mutex);
            isDone = sent.size() == count;
        }
        return sent.back();
    };
    Progress progress(connection, std::chrono::milliseconds(0));
    progress.setClientCanCreate(true);
    {
        const auto work = progress.start("title", "token of the client");
        EXPECT_EQ(waitFor(1)["params"]["value"]["kind"], "begin");
    }
    EXPECT_EQ(waitFor(2)["params"], (Json{{"token", "token of the client"}, {"value", {{"kind", "end"}}}}));
    for (const Json& response : {Json{{"result", nullptr}}, Json{{"error", {{"code", 1}}}}}) {
        sent.clear();
        Json answer = response;
        const bool isAllowed = response.contains("result");
        {
            const auto work = progress.start("title", nullptr);
            const Json request = waitFor(1);
            EXPECT_EQ(request["method"], "window/workDoneProgress/create");
            answer["id"] = request["id"];
            connection.handleResponse(answer);
            EXPECT_EQ(sent.size(), isAllowed ? 2U : 1U);
        }
        EXPECT_EQ(sent.size(), isAllowed ? 3U : 1U);
    }
}

/// A client doesn't know the token of a request any more that has its answer.
void expectProgressOnlyBeforeAnswers(const std::vector<Json>& messages) {
    std::set<Json> answered;
    for (const Json& message : messages) {
        if (!message.contains("method")) {
            answered.insert(message["id"]);
        } else if (message["method"] == "$/progress") {
            EXPECT_FALSE(answered.contains(message["params"]["token"])) << message;
        }
    }
}

/// For the thread sanitizer: real threads, many documents, changes while answers are made.
TEST(LspServer, WorksOnSeveralThreads) {
    TemporaryFolder folder;
    DiskFileSystem disk;
    std::mutex mutex;
    std::vector<Json> answers;
    const auto send = [&](std::string_view body) {
        const std::lock_guard guard(mutex);
        answers.push_back(Json::parse(body));
    };
    std::size_t requests = 0;
    {
        Server server(send, disk, std::make_unique<ThreadedWorker>(),
                      Server::Hooks{{}, {}, std::chrono::milliseconds(0)});
        const auto post = [&](Json message) {
            message["jsonrpc"] = "2.0";
            server.step(message.dump());
        };
        post({{"id", 0},
              {"method", "initialize"},
              {"params", {{"capabilities", Json::object()}, {"trace", "verbose"}}}});
        std::string large;
        while (large.size() < (1U << 20)) {
            large += "if a\nx = 1;\nend\n";
        }
        for (int round = 0; round < 20; ++round) {
            const std::string uri =
                "file://" + folder.getPath().string() + "/" + std::to_string(round % 4) + ".omb";
            const std::string text = round % 4 == 3 ? large : "function f(x)\n x = [1 2]';\nend\n";
            post({{"method", "textDocument/didOpen"},
                  {"params",
                   {{"textDocument",
                     {{"uri", uri}, {"languageId", "ombrel"}, {"version", round}, {"text", text}}}}}});
            for (const char* method : {"textDocument/formatting", "textDocument/semanticTokens/full",
                                       "textDocument/foldingRange", "textDocument/documentSymbol"}) {
                post({{"id", static_cast<int>(++requests)},
                      {"method", method},
                      {"params",
                       {{"textDocument", {{"uri", uri}}},
                        {"options", Json::object()},
                        {"workDoneToken", requests}}}});
            }
            post({{"method", "textDocument/didChange"},
                  {"params",
                   {{"textDocument", {{"uri", uri}, {"version", round + 100}}},
                    {"contentChanges", {{{"text", "y\n"}}}}}}});
            post({{"method", "$/cancelRequest"}, {"params", {{"id", static_cast<int>(requests)}}}});
        }
        for (bool isDone = false; !isDone; std::this_thread::yield()) {
            const std::lock_guard guard(mutex);
            isDone = requests + 1 == static_cast<std::size_t>(
                                         std::count_if(answers.begin(), answers.end(),
                                                       [](const Json& m) { return !m.contains("method"); }));
        }
    }
    EXPECT_EQ(requests, 80U);
    expectProgressOnlyBeforeAnswers(answers);
}

} // namespace
