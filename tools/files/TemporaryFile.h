#pragma once

#include "files/File.h"

#include <string>

#include <sys/types.h>

namespace ombrel {

/// A new file that replaces another file of its folder, or gets a name there that nothing has. Where the file
/// system can do that, it has no name while it is written, so that it is gone even if the process is killed.
/// It gets a temporary name just before it replaces another file. The destructor removes it unless it got its
/// final name. It is locked (flock) while it exists.
///
/// Its members throw FileError with the kind Unwritable.
class TemporaryFile {
public:
    /// What may be done with the file, less what the user's mask takes away.
    enum class Access : mode_t { Owner = 0600, Everybody = 0666 };

    /// In a folder from openFolder(), which has to outlive it.
    explicit TemporaryFile(const File& folder, Access access = Access::Owner);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    void write(const std::string& bytes);

    /// Owner, mode, access list and extended attributes, as another file has them.
    void takeProperties(const File& other);

    void sync();

    /// Gives it its temporary name, if it has none, so that replace() is a single step.
    void takeName();

    /// Gives it the name of a file in its folder. Atomic: whoever opens that finds the old file or this one.
    /// Call takeName() before.
    void replace(const std::string& target);

    /// Gives it a name in its folder, unless there is something of this name.
    void place(const std::string& target);

    /// Removes the files that killed processes of this user have left in a folder under their temporary
    /// names. Never fails.
    static void removeAbandoned(const std::string& folder);

private:
    void linkTo(const std::string& target, const char* failure);

    const File& folder;
    std::string name; ///< its temporary one, or the one that it is going to have
    bool hasName = false;
    File file;
};

} // namespace ombrel
