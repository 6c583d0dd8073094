#include "files/ExtendedAttributes.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <vector>

#include <sys/xattr.h>

namespace ombrel {

namespace {

constexpr const char* failure = "can't keep its extended attributes";

/// Calls one of the system's reading functions, which say how much room they need, until the room is enough.
/// Gives nothing where there are no attributes to read.
template <class Read>
std::string readAttribute(Read read) {
    std::string bytes;
    while (true) {
        const ssize_t needed = read(nullptr, 0);
        bytes.resize(needed > 0 ? static_cast<std::size_t>(needed) : 0);
        const ssize_t size = needed > 0 ? read(bytes.data(), bytes.size()) : needed;
        if (size >= 0) {
            bytes.resize(static_cast<std::size_t>(size));
            return bytes;
        }
        if (errno == ENOTSUP || errno == ENODATA) {
            return {};
        }
        if (errno != ERANGE) {
            throw makeFileError(FileError::Kind::Unwritable, failure, errno);
        }
    }
}

std::vector<std::string> splitNames(const std::string& list) {
    std::vector<std::string> names;
    for (std::size_t first = 0; first < list.size(); first += names.back().size() + 1) {
        names.emplace_back(list.c_str() + first);
    }
    return names;
}

void check(int result, std::string_view name) {
    const bool isOptional = name.starts_with("security.") || name.starts_with("trusted.");
    if (result != 0 && !isOptional) {
        throw makeFileError(FileError::Kind::Unwritable, failure, errno);
    }
}

std::vector<std::string> listNames(const File& file) {
    return splitNames(readAttribute(
        [&](char* buffer, std::size_t size) { return ::flistxattr(file.get(), buffer, size); }));
}

} // namespace

void copyExtendedAttributes(const File& from, const File& to) {
    const auto wanted = listNames(from);
    for (const std::string& name : listNames(to)) { // a folder can give its new files an access list
        if (std::find(wanted.begin(), wanted.end(), name) == wanted.end()) {
            check(::fremovexattr(to.get(), name.c_str()), name);
        }
    }
    for (const std::string& name : wanted) {
        const std::string value = readAttribute([&](char* buffer, std::size_t size) {
            return ::fgetxattr(from.get(), name.c_str(), buffer, size);
        });
        check(::fsetxattr(to.get(), name.c_str(), value.data(), value.size(), 0), name);
    }
}

} // namespace ombrel
