#include "files/InputReader.h"

#include "text/TextEncoding.h"

#include <array>
#include <istream>

namespace ombrel {

namespace {

std::string readStream(std::istream& stream) {
    std::string bytes;
    std::array<char, 1 << 16> buffer;
    while (stream.read(buffer.data(), buffer.size()) || stream.gcount() > 0) {
        bytes.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
        if (bytes.size() > maximalByteCount) {
            throw FileError(FileError::Kind::TooLarge, tooLargeMessage);
        }
    }
    if (stream.bad()) {
        throw FileError(FileError::Kind::Unreadable, "can't read standard input");
    }
    return bytes;
}

} // namespace

std::string readInput(const std::string& path, std::istream& in, FileSystem& files) {
    return path == "-" ? readStream(in) : files.read(path, maximalByteCount);
}

} // namespace ombrel
