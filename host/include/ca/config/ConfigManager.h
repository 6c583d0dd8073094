#pragma once

#include "ca/config/AbstractConfigManager.h"
#include "ombrel/api.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace ca::config {

/// Reads configuration files from disk, each once: to see a changed file, make a new manager. A file that
/// can't be read is tried again each time.
///
/// A file is UTF-8, with or without a byte-order mark, and holds `ca::utils::maximalJsonSize` bytes at most.
/// Only regular files are read, so that no pipe or device can keep the host waiting.
class OMBREL_HOST_API ConfigManager : public AbstractConfigManager {
public:
    ConfigManager();
    ~ConfigManager() override;

    /// Relative names count from the folder of `from`, and links are followed as far as the file system goes.
    fl::filesystem::path resolve(const fl::filesystem::path& from, const std::u16string& name) override;

    std::shared_ptr<const ca::utils::JsonDocument> getDocument(const fl::filesystem::path& path) override;

private:
    std::unordered_map<std::u16string, std::shared_ptr<const ca::utils::JsonDocument>> documents;
    std::mutex lock; ///< guards `documents`; not held while a file is read
};

} // namespace ca::config
