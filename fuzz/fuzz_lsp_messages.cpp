// The language server as its client sees it. The input is read as steps: raw bodies, requests about two
// documents, and edits of them, of which a simple model keeps the text. Every request has one answer, edits
// of answers are sorted and inside the document, and after formatting the model is still the server's text.

#include "FuzzText.h"

#include "lsp/Server.h"
#include "text/TextEncoding.h"

#include <fmt/format.h>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace ombrel;
using namespace ombrel::lsp;

/// No file is there.
class NoFiles : public FileSystem {
public:
    std::string read(const std::string&, ReadLimit) override {
        throw FileError(FileError::Kind::Unreadable, "no file");
    }
    void replace(const std::string&, const std::string&, const std::string&) override {}
    void write(const std::string&, const std::string&) override {}
};

class ImmediateWorker : public Worker {
public:
    void post(Lane, Urgency, std::function<void()> job) override { job(); }
};

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data(data), size(size) {}

    bool isEmpty() const { return size == 0; }

    std::uint8_t take() {
        if (size == 0) {
            return 0;
        }
        --size;
        return *data++;
    }

    std::string takeText() {
        std::string text;
        for (std::size_t length = take() % 64; length > 0 && size > 0; --length) {
            text += static_cast<char>(take());
        }
        return encodeLossy(decodeLossy(text)); // a client sends UTF-8
    }

private:
    const std::uint8_t* data;
    std::size_t size;
};

constexpr const char* methods[] = {"textDocument/formatting",
                                   "textDocument/rangeFormatting",
                                   "textDocument/rangesFormatting",
                                   "textDocument/onTypeFormatting",
                                   "textDocument/willSaveWaitUntil",
                                   "textDocument/diagnostic",
                                   "textDocument/semanticTokens/full",
                                   "textDocument/semanticTokens/full/delta",
                                   "textDocument/semanticTokens/range",
                                   "textDocument/foldingRange",
                                   "textDocument/documentSymbol",
                                   "textDocument/codeAction",
                                   "textDocument/completion",
                                   "textDocument/hover",
                                   "ombrel/options"};

class Session {
public:
    explicit Session(Bytes bytes)
        : bytes(bytes), server([this](std::string_view body) { receive(body); }, files,
                               std::make_unique<ImmediateWorker>(), {{}, {}, std::nullopt}) {}

    void run() {
        // Pulled diagnostics are made when asked for. After every edit they cost most of the time.
        const char* pulled = bytes.take() % 8 != 0 ? R"(, "diagnostic": {})" : "";
        request("initialize", fmt::format(R"({{"capabilities": {{"textDocument":
            {{"codeAction": {{"codeActionLiteralSupport": {{}}}}{}}}}}}})",
                                          pulled));
        while (!bytes.isEmpty()) {
            step();
        }
    }

private:
    void receive(std::string_view body) {
        Json message = Json::parse(body);
        if (message.contains("id") && !message.contains("method")) {
            ++answers;
            answer = std::move(message);
        }
    }

    /// Messages are put together as text, which costs a small part of what their values would.
    void send(std::string_view head, std::string_view params) {
        server.step(fmt::format(R"({{"jsonrpc": "2.0", {}, "params": {}}})", head, params));
    }

    const Json& request(const std::string& method, std::string_view params) {
        answers = 0;
        send(fmt::format(R"("id": {}, "method": "{}")", ++lastId, method), params);
        if (answers != 1 || answer["id"] != lastId) {
            fail(method + " doesn't have one answer");
        }
        return answer;
    }

    void step() {
        const std::uint8_t kind = bytes.take();
        const std::string uri = kind % 2 == 0 ? "file:///none/a.omb" : "file:///none/.ombrel-format.json";
        switch (kind / 2 % 5) {
        case 0:
            open(uri);
            break;
        case 1:
        case 2:
            edit(uri);
            break;
        case 3:
            ask(uri);
            break;
        default:
            server.step(bytes.takeText());
            texts.clear(); // it may have lost the texts, or opened others
            break;
        }
    }

    void open(const std::string& uri) {
        const std::string text = bytes.takeText();
        texts[uri] = decodeLossy(text);
        send(R"("method": "textDocument/didOpen")",
             fmt::format(
                 R"({{"textDocument": {{"uri": "{}", "languageId": "ombrel", "version": {}, "text": {}}}}})",
                 uri, ++version, Json(text).dump()));
    }

    Position takePosition() {
        const std::uint32_t line = bytes.take() % 8;
        return {line, bytes.take() % 16U};
    }

    Range takeRange() {
        const Position start = takePosition();
        return {start, takePosition()};
    }

    static std::string write(Position position) {
        return fmt::format(R"({{"line": {}, "character": {}}})", position.line, position.character);
    }

    static std::string write(const Range& range) {
        return fmt::format(R"({{"start": {}, "end": {}}})", write(range.start), write(range.end));
    }

    void edit(const std::string& uri) {
        const Range range = takeRange();
        const std::string text = bytes.takeText();
        if (const auto known = texts.find(uri); known != texts.end()) {
            known->second = replace(known->second, range, decodeLossy(text));
        }
        send(R"("method": "textDocument/didChange")",
             fmt::format(R"({{"textDocument": {{"uri": "{}", "version": {}}},
                 "contentChanges": [{{"range": {}, "text": {}}}]}})",
                         uri, ++version, write(range), Json(text).dump()));
    }

    static std::u16string replace(std::u16string text, const Range& range, const std::u16string& inserted) {
        const LineIndex lines(text);
        const auto [begin, end] = std::minmax({findOffset(text, lines, range.start, PositionEncoding::Utf16),
                                               findOffset(text, lines, range.end, PositionEncoding::Utf16)});
        return text.replace(begin, end - begin, inserted);
    }

    void ask(const std::string& uri) {
        const std::string method = methods[bytes.take() % std::size(methods)];
        const Range range = takeRange();
        const std::string first = write(range);
        const std::string second = write(takeRange());
        const char* typed = bytes.take() % 2 == 0 ? "\\n" : "d";
        const Json& reply = request(
            method,
            fmt::format(R"({{"textDocument": {{"uri": "{}"}}, "range": {}, "ranges": [{}, {}], "position": {},
                 "ch": "{}", "previousResultId": "1", "options": {{"tabSize": {}, "insertSpaces": true}}}})",
                        uri, first, first, second, write(range.start), typed, bytes.take()));
        if (reply.contains("error") && reply["error"]["code"] == static_cast<int>(ErrorCode::InternalError)) {
            fail(method + ": " + reply.dump());
        }
        const auto known = texts.find(uri);
        if (known != texts.end() && method.ends_with("ormatting") && reply.contains("result") &&
            reply["result"].is_array()) {
            checkEdits(known->second, reply["result"]);
        }
    }

    static void checkEdits(const std::u16string& text, const Json& edits) {
        const LineIndex lines(text);
        std::size_t last = 0;
        for (const Json& edit : edits) {
            const Range range = readRange(edit["range"]);
            for (const Position place : {range.start, range.end}) {
                const std::size_t offset = findOffset(text, lines, place, PositionEncoding::Utf16);
                PositionFinder finder(text, lines, PositionEncoding::Utf16);
                const Position again = finder.find(offset);
                const bool splitsLineEnd =
                    offset > 0 && offset < text.size() && text[offset - 1] == u'\r' && text[offset] == u'\n';
                if (offset < last || splitsLineEnd || again.line != place.line ||
                    again.character != place.character) {
                    fail("an edit is where it must not be: " + edits.dump());
                }
                last = offset;
            }
        }
    }

    Bytes bytes;
    NoFiles files;
    Server server;
    std::map<std::string, std::u16string> texts; ///< that the server has to know, by URI
    Json answer;
    int answers = 0;
    int lastId = 0;
    int version = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Session(Bytes(data, size)).run();
    return 0;
}
