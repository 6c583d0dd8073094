#pragma once

#include <ca/config/AbstractConfigManager.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>

/// Configuration files in memory, by their paths. Paths are the same if they look the same: nothing is a
/// link.
class MemoryConfigManager : public ca::config::AbstractConfigManager {
public:
    explicit MemoryConfigManager(std::map<std::u16string, std::u16string> files) : files(std::move(files)) {}

    fl::filesystem::path resolve(const fl::filesystem::path& from, const std::u16string& name) override {
        const std::filesystem::path folder = std::filesystem::path(from.string()).parent_path();
        return fl::filesystem::path((folder / std::filesystem::path(name)).lexically_normal().u16string());
    }

    std::shared_ptr<const ca::utils::JsonDocument> getDocument(const fl::filesystem::path& path) override {
        const auto file = files.find(path.string());
        if (file == files.end()) {
            throw ca::config::ConfigFileError("there is no such file");
        }
        return std::make_shared<const ca::utils::JsonDocument>(ca::utils::readJson(file->second));
    }

private:
    std::map<std::u16string, std::u16string> files;
};
