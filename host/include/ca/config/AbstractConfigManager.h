#pragma once

#include "ca/utils/JsonDocument.h"
#include "fl/filesystem/basic_path.h"
#include "ombrel/api.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace ca::config {

/// Thrown by a manager if a file can't be had. The reason is for people and completes "can't read NAME: ".
class OMBREL_HOST_API ConfigFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    ~ConfigFileError() override;
};

/// Finds and reads the files that configurations are layered from. Any number of threads may use one.
class OMBREL_HOST_API AbstractConfigManager : public std::enable_shared_from_this<AbstractConfigManager> {
public:
    virtual ~AbstractConfigManager();

    /// The file that `name`, written in the file `from`, means. Two names of one file give equal paths,
    /// whether or not there is such a file. Throws `ConfigFileError` if the name can't be one of a file.
    virtual fl::filesystem::path resolve(const fl::filesystem::path& from, const std::u16string& name) = 0;

    /// The content of a file that `resolve` gave. The same document for each call with an equal path. Never
    /// empty: faults in the text are part of the document. Throws `ConfigFileError` if the file can't be
    /// read.
    virtual std::shared_ptr<const ca::utils::JsonDocument> getDocument(const fl::filesystem::path& path) = 0;

protected:
    AbstractConfigManager() = default;
    AbstractConfigManager(const AbstractConfigManager&) = default;
    AbstractConfigManager& operator=(const AbstractConfigManager&) = default;
};

} // namespace ca::config
