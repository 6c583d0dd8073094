#pragma once

#include <cstdint>
#include <string_view>

namespace ombrel {

/// One of several runs that share the files of a search: together they take all files, and each file once.
struct Shard {
    std::uint32_t number = 1; ///< from 1 to `count`
    std::uint32_t count = 1;
};

/// The number, from 1, of the shard that a file belongs to. Depends on the bytes of `name` and the number of
/// shards only: it is the same on every machine and in every version.
std::uint32_t getShardNumber(std::string_view name, std::uint32_t count);

} // namespace ombrel
