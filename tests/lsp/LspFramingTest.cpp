// Bytes to messages, and bodies to JSON: whatever comes in, the reader goes on, or stops where it can't know
// how.

#include "lsp/FrameReader.h"
#include "lsp/Json.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace ombrel::lsp;

/// All frames of a stream: bodies as they are, `!` for a fault that is skipped, `X` for a fatal one, `...` if
/// the stream ends inside a message.
std::vector<std::string> readAll(const std::string& stream, std::size_t pieceSize) {
    FrameReader reader;
    std::vector<std::string> frames;
    for (std::size_t i = 0; i < stream.size(); i += pieceSize) {
        reader.append(stream.substr(i, pieceSize));
        while (const auto frame = reader.getNext()) {
            const auto* fault = std::get_if<FrameFault>(&*frame);
            frames.push_back(fault == nullptr ? std::get<std::string>(*frame) : fault->isFatal ? "X" : "!");
        }
    }
    if (!reader.isBetweenFrames() && (frames.empty() || frames.back() != "X")) {
        frames.emplace_back("...");
    }
    return frames;
}

struct StreamRow {
    std::string stream;
    std::vector<std::string> frames;
};

TEST(LspFraming, CutsStreamsIntoMessagesWhateverPiecesTheyComeIn) {
    const std::string head = "Content-Length: ";
    const std::string tooLong = std::to_string(maximalBodySize + 1);
    const std::vector<StreamRow> rows = {
        {head + "2\r\n\r\n{}" + head + "0\r\n\r\n" + head + "3\r\n\r\n[1]", {"{}", "", "[1]"}},
        {"content-length:2\r\nContent-Type: application/vscode-jsonrpc; charset=utf-8\r\n\r\n{}", {"{}"}},
        {"Content-Type: x\r\ncOnTeNt-LeNgTh:   2  \r\n\r\n{}", {"{}"}},
        {head + "2\r\n" + head + "2\r\n\r\n{}", {"{}"}},
        {head + "2\r\n" + head + "3\r\n\r\n{} ", {"X"}},
        {"Content-Type: x\r\n\r\n{}", {"X"}},
        {head + "-1\r\n\r\n{}", {"X"}},
        {head + "2x\r\n\r\n{}", {"X"}},
        {head + "\r\n\r\n{}", {"X"}},
        {head + "99999999999999999999999\r\n\r\n{}", {"X"}},
        {"nonsense\r\n\r\n{}" + head + "2\r\n\r\n{}", {"X"}},
        {head + "10000000000\r\n\r\n{}" + head + "2\r\n\r\n{}",
         {"!", "..."}}, // all that is part of the long one
        {std::string(64 << 10, 'a'), {"X"}},
        {head + "2\r\n\r\n{", {"..."}},
        {head + "2\r\n", {"..."}},
        {"", {}},
    };
    for (const StreamRow& row : rows) {
        for (const std::size_t size : {std::size_t{1}, std::size_t{7}, row.stream.size()}) {
            EXPECT_EQ(readAll(row.stream, size), row.frames)
                << row.stream.substr(0, 80) << " in pieces of " << size;
        }
    }
    const std::string longOne = head + tooLong + "\r\n\r\n" + std::string(maximalBodySize + 1, ' ');
    EXPECT_EQ(readAll(longOne + head + "2\r\n\r\n{}", 1 << 16), (std::vector<std::string>{"!", "{}"}));
}

TEST(LspFraming, ReadsJsonWithinLimits) {
    const auto nest = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    for (const std::string& bad :
         {std::string(), std::string("{"), std::string("\"\xFF\""), nest(100'000), std::string(100'000, '['),
          std::string("{} {}"), std::string("\"\\u12\"")}) {
        EXPECT_FALSE(parseMessage(bad).has_value()) << bad.substr(0, 20);
    }
    EXPECT_TRUE(parseMessage(nest(maximalMessageDepth)).has_value());
    // Half a pair is a character of the same length; a whole pair, and what only looks like one, stay.
    EXPECT_EQ(*parseMessage(R"("\ud800x\udc00\ud83d\ude00\\ud800\uD83D")"),
              Json("\uFFFDx\uFFFD\U0001F600\\ud800\uFFFD"));
}

} // namespace
