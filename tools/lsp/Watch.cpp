#include "lsp/Watch.h"

#include "files/Exclusion.h"
#include "options/OptionsResolver.h"

#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

Json makeRegistration(const std::string& id, const std::string& method, Json options) {
    return {{"id", id}, {"method", method}, {"registerOptions", std::move(options)}};
}

/// A path as a glob pattern that matches nothing else.
std::string escapePattern(std::string_view path) {
    std::string pattern;
    for (const char c : path) {
        const bool isSpecial = std::string_view("*?[]{}").find(c) != std::string_view::npos;
        pattern += isSpecial ? '?' : c;
    }
    return pattern;
}

} // namespace

void Watch::start(const Client& client) {
    if (client.registersSettings) {
        const Json registration =
            makeRegistration("settings", "workspace/didChangeConfiguration", {{"section", "ombrel"}});
        connection.request("client/registerCapability", {{"registrations", Json::array({registration})}});
    }
    const std::lock_guard guard(mutex);
    if (client.registersWatchers) {
        Json patterns = Json::array();
        for (const std::string_view name : {optionsFileName, editorConfigName, ignoreFileName}) {
            patterns.push_back(fmt::format("**/{}", name));
        }
        watch(patterns);
    }
}

void Watch::add(const Client& client, const std::set<std::string>& optionsFiles) {
    const std::lock_guard guard(mutex);
    Json patterns = Json::array();
    for (const std::string& path : optionsFiles) {
        if (!path.ends_with(fmt::format("/{}", optionsFileName)) && watched.insert(path).second) {
            patterns.push_back(escapePattern(path));
        }
    }
    if (client.registersWatchers && !patterns.empty()) {
        watch(patterns);
    }
}

void Watch::watch(const Json& patterns) {
    Json watchers = Json::array();
    for (const Json& pattern : patterns) {
        watchers.push_back({{"globPattern", pattern}});
    }
    const Json registration = makeRegistration(fmt::format("options-{}", ++registrationCount),
                                               "workspace/didChangeWatchedFiles", {{"watchers", watchers}});
    connection.request("client/registerCapability", {{"registrations", Json::array({registration})}});
}

} // namespace ombrel::lsp
