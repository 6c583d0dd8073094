#include "symbols/LibraryFile.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ca::astapi {

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

bool readAt(int file, std::size_t offset, void* bytes, std::size_t size) {
    return ::pread(file, bytes, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

bool isWhole(int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    Header header{};
    if (!readAt(file, 0, &header, sizeof header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_type != ET_DYN || header.e_phentsize != sizeof(Segment)) {
        return false;
    }
    std::vector<Segment> segments(header.e_phnum);
    const auto size = static_cast<ElfW(Off)>(status.st_size);
    return readAt(file, header.e_phoff, segments.data(), segments.size() * sizeof(Segment)) &&
           std::all_of(segments.begin(), segments.end(), [size](const Segment& segment) {
               return segment.p_offset <= size && segment.p_filesz <= size - segment.p_offset;
           });
}

} // namespace

bool isWholeLibrary(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return false;
    }
    const bool isGood = isWhole(file);
    ::close(file);
    return isGood;
}

} // namespace ca::astapi
