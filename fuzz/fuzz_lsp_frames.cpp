// The frame reader of the language server: a stream gives the same frames whatever pieces it comes in, and
// each body is either JSON that can be written again, or refused.

#include "FuzzText.h"

#include "lsp/FrameReader.h"
#include "lsp/Json.h"

#include <vector>

namespace {

using namespace ombrel::lsp;

std::vector<std::string> readAll(std::string_view stream, std::size_t pieceSize) {
    FrameReader reader;
    std::vector<std::string> frames;
    for (; !stream.empty(); stream.remove_prefix(std::min(pieceSize, stream.size()))) {
        reader.append(stream.substr(0, pieceSize));
        while (const auto frame = reader.getNext()) {
            const auto* fault = std::get_if<FrameFault>(&*frame);
            frames.push_back(fault == nullptr ? "body " + std::get<std::string>(*frame) : fault->text);
        }
    }
    return frames;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string stream(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::vector<std::string> whole = readAll(stream, stream.size() + 1);
    if (readAll(stream, 1 + data[0] % 16) != whole) {
        fail("the frames depend on the pieces of the stream");
    }
    for (const std::string& frame : whole) {
        if (const auto json = parseMessage(frame.substr(std::min<std::size_t>(5, frame.size())))) {
            const std::string again = json->dump();
            if (parseMessage(again) != json) {
                fail("a message is another one when it is written and read: " + again);
            }
        }
    }
    return 0;
}
