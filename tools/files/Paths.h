#pragma once

#include <string>
#include <string_view>

namespace ombrel {

// Paths here are absolute and normal. They are only looked at: the disk isn't asked, but for the current
// folder. A relative path is allowed too, and is below no folder.

/// Whether something is in the folder or further down. Nothing is below an unknown folder, an empty name.
bool isBelow(std::string_view folder, std::string_view path);

/// The path as seen from a folder: `c/d` from /a/b for /a/b/c/d, `../x` for /a/x.
std::string getPathFrom(const std::string& folder, const std::string& path);

/// The path as seen from a folder if it is below, otherwise as it is.
std::string getShortPath(const std::string& folder, const std::string& path);

/// The folder that a path is in; the root is in itself.
std::string getFolder(std::string_view path);

/// Absolute; empty if the folder has been removed. Throws if it can't be told: without it options and ignore
/// files wouldn't be found, and files would be formatted without them.
std::string getCurrentFolder();

} // namespace ombrel
