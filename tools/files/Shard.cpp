#include "files/Shard.h"

namespace ombrel {

namespace {

/// FNV-1a with 64 bits, whose low bits are then mixed with the others: by itself the lowest bit is only the
/// parity of the text.
std::uint64_t getHash(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    }
    hash = (hash ^ (hash >> 33)) * 0xFF51AFD7ED558CCDU;
    return hash ^ (hash >> 33);
}

} // namespace

std::uint32_t getShardNumber(std::string_view name, std::uint32_t count) {
    return static_cast<std::uint32_t>(getHash(name) % count) + 1;
}

} // namespace ombrel
