#include "files/InputReader.h"

#include <array>
#include <istream>
#include <string_view>

namespace ombrel {

namespace {

std::string readStream(std::istream& stream, ReadLimit limit) {
    std::string bytes;
    std::array<char, 1 << 16> buffer;
    bool hasNul = false;
    bool isLast = false;
    while (!isLast && (stream.read(buffer.data(), buffer.size()) || stream.gcount() > 0)) {
        const std::string_view piece(buffer.data(), static_cast<std::size_t>(stream.gcount()));
        isLast = hasNul;
        hasNul = limit.endsAfterNul && piece.find('\0') != piece.npos;
        bytes += piece;
        if (bytes.size() > limit.byteCount) {
            throw FileError(FileError::Kind::TooLarge, tooLargeMessage);
        }
    }
    if (stream.bad()) {
        throw FileError(FileError::Kind::Unreadable, "can't read standard input");
    }
    return bytes;
}

} // namespace

std::string readInput(const std::string& path, std::istream& in, FileSystem& files, ReadLimit limit) {
    return path == "-" ? readStream(in, limit) : files.read(path, limit);
}

} // namespace ombrel
