#include "lsp/Log.h"

#include <chrono>

#include <fmt/chrono.h>

namespace ombrel::lsp {

namespace {

constexpr std::size_t longestText = 4000; // bytes of a message

} // namespace

Log::Log(const std::string& path) : isOff(path.empty()) {
    if (!isOff) {
        file.open(path, std::ios::app | std::ios::binary);
    }
}

void Log::write(std::string_view direction, std::string_view text) {
    if (isOff) {
        return;
    }
    const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    const std::string cut = text.size() > longestText ? fmt::format("... ({} bytes)", text.size()) : "";
    const std::lock_guard guard(mutex);
    file << fmt::format("{:%FT%T}Z {} {}{}\n", now, direction, text.substr(0, longestText), cut)
         << std::flush;
}

} // namespace ombrel::lsp
