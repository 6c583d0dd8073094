#include "ca/config/ConfigManager.h"

#include "i18n/utf8.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

namespace ca::config {

namespace {

namespace fs = std::filesystem;

std::string readBytes(const fs::path& file, std::uintmax_t size) {
    std::string bytes(size, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(bytes.data(), static_cast<std::streamsize>(size));
    if (stream.bad() || !stream.is_open()) {
        throw ConfigFileError("it can't be opened or read");
    }
    bytes.resize(static_cast<std::size_t>(stream.gcount())); // it may have become shorter meanwhile
    return bytes;
}

std::u16string readText(const fs::path& file) {
    if (!fs::exists(file)) {
        throw ConfigFileError("there is no such file");
    }
    if (!fs::is_regular_file(file)) {
        throw ConfigFileError("it is no regular file");
    }
    const std::uintmax_t size = fs::file_size(file);
    if (size > ca::utils::maximalJsonSize) {
        throw ConfigFileError("it is larger than 16 MB");
    }
    std::optional<std::u16string> text = fl::i18n::decode(readBytes(file, size));
    if (!text) {
        throw ConfigFileError("it is not UTF-8");
    }
    return *std::move(text);
}

} // namespace

ConfigFileError::~ConfigFileError() = default;
AbstractConfigManager::~AbstractConfigManager() = default;
ConfigManager::ConfigManager() = default;
ConfigManager::~ConfigManager() = default;

fl::filesystem::path ConfigManager::resolve(const fl::filesystem::path& from, const std::u16string& name) {
    if (name.empty() || name.find(u'\0') != std::u16string::npos) {
        throw ConfigFileError("no file can have this name");
    }
    try {
        const fs::path folder = fs::path(from.string()).parent_path();
        return fl::filesystem::path(fs::weakly_canonical(fs::absolute(folder / fs::path(name))).u16string());
    } catch (const fs::filesystem_error& error) {
        throw ConfigFileError(error.code().message());
    }
}

std::shared_ptr<const ca::utils::JsonDocument> ConfigManager::getDocument(const fl::filesystem::path& path) {
    {
        const std::lock_guard guard(lock);
        const auto known = documents.find(path.string());
        if (known != documents.end()) {
            return known->second;
        }
    }
    try {
        auto document =
            std::make_shared<const ca::utils::JsonDocument>(ca::utils::readJson(readText(path.string())));
        const std::lock_guard guard(lock);
        return documents.emplace(path.string(), std::move(document))
            .first->second; // another thread's, if faster
    } catch (const fs::filesystem_error& error) {
        throw ConfigFileError(error.code().message());
    }
}

} // namespace ca::config
