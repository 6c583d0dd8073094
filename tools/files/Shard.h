#pragma once

#include "files/FileSystem.h"

#include <cstdint>
#include <string>
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

/// Knows files by names that don't depend on where their repository is checked out.
class ShardNames {
public:
    /// Keeps a reference to the files.
    explicit ShardNames(FileSystem& files) : files(files) {}

    /// The path from the top of the file's repository. Outside of repositories the path from `start`, the
    /// folder that the file was found through, or as it is if it isn't below that. All paths are absolute and
    /// without symbolic links.
    std::string getName(const std::string& path, const std::string& start);

private:
    FileSystem& files;
    std::string lastFolder; ///< whose repository is known; empty: none yet
    std::string lastRepository;
};

} // namespace ombrel
