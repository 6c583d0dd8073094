// Requests to the explorer: any bytes are refused, or are a request that the rules let through, and every
// body gets an answer that fits its text. The input is a request as it comes from a socket.

#include "FuzzText.h"

#include "explorer/server/Access.h"
#include "explorer/server/Worker.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

using namespace ombrel;
using nlohmann::json;

static const AccessRules rules{8080, "0123456789abcdef0123456789abcdef"};

static bool isOneOf(std::string_view text, std::initializer_list<std::string_view> texts) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

static void checkAllowed(const RequestHead& head, const Route& route) {
    if (!isOneOf(head.get("host"), {"127.0.0.1:8080", "localhost:8080", "[::1]:8080"}) ||
        head.method != route.method) {
        fail("a request to another server is let through");
    }
    if (route.needsToken && head.get("x-ombrel-token") != rules.token) {
        fail("a request without the token is let through");
    }
    const bool isOwn =
        isOneOf(head.get("origin"), {"http://127.0.0.1:8080", "http://localhost:8080", "http://[::1]:8080"});
    if (!isOwn && (head.method == "POST" || head.count("origin") != 0)) {
        fail("a request of another page is let through");
    }
    if (head.count("transfer-encoding") != 0 || head.bodyLength > maximalBodyLength) {
        fail("a body that isn't framed is let through");
    }
}

static void checkHead(std::string_view bytes) {
    const auto head = parseHead(bytes);
    if (!head) {
        return;
    }
    if (!head->target.starts_with('/') || bytes.size() > maximalHeadLength) {
        fail("a head is read that isn't one");
    }
    for (const Route& route : {Route{"GET", false}, Route{"GET", true}, Route{"POST", true}}) {
        if (!checkAccess(*head, &route, rules)) {
            checkAllowed(*head, route);
        }
    }
    if (!checkAccess(*head, nullptr, rules)) {
        fail("a path that isn't there is let through");
    }
}

static json getAnswer(const char* operation, const std::string& body) {
    const WorkerResult result = work(operation, body);
    if (result.kind == WorkerResult::Kind::BadRequest) {
        return nullptr;
    }
    if (result.kind != WorkerResult::Kind::Answer) {
        fail("a body gets no answer");
    }
    return json::parse(result.text);
}

/// The text of a request with its byte-order mark, which counts in the offsets of answers.
static std::u16string getText(const std::string& body) {
    const std::string bytes = json::parse(body).at("text").get<std::string>();
    return (bytes.starts_with(byteOrderMark) ? u"\uFEFF" : u"") + decodeLossy(bytes);
}

static void checkFormatted(const std::string& body) {
    const json answer = getAnswer("format", body);
    if (answer.is_null()) {
        return;
    }
    std::u16string text = getText(body);
    for (auto edit = answer.at("edits").rbegin(); edit != answer.at("edits").rend(); ++edit) {
        text.replace(edit->at("offset"), edit->at("length"),
                     decodeLossy(edit->at("text").get<std::string>()));
    }
    if (encodeLossy(text) != answer.at("text")) {
        fail("the edits don't make the text");
    }
    if (!answer.at("errors").empty() && !answer.at("edits").empty()) {
        fail("a text with errors is changed");
    }
}

static void checkRows(const std::string& body) {
    const json answer = getAnswer("dump", body);
    if (answer.is_null()) {
        return;
    }
    const std::size_t length = getText(body).size();
    for (const json& row : answer.at("rows")) {
        if (row.at("begin") > row.at("end") || row.at("end") > length) {
            fail("a row is about no part of the text");
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t end = bytes.find("\r\n\r\n");
    const std::size_t headLength = end == std::string_view::npos ? 0 : end + 4;
    checkHead(bytes.substr(0, headLength));
    const std::string body(bytes.substr(headLength));
    checkFormatted(body);
    checkRows(body);
    return 0;
}
