#include "explorer/server/Presence.h"

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

/// A page in the background may be allowed to run only rarely.
constexpr std::chrono::minutes maximalSilence{15};

constexpr std::size_t maximalBodySize = 200;
constexpr std::size_t maximalPages = 100;

} // namespace

bool Presence::report(const std::string& body) {
    if (body.size() > maximalBodySize) {
        return false;
    }
    const auto json = nlohmann::json::parse(body, nullptr, false);
    if (!json.is_object() || !json.contains("page") || !json["page"].is_string() ||
        !json.contains("isOpen") || !json["isOpen"].is_boolean()) {
        return false;
    }
    const std::lock_guard guard(lock);
    lastSeen = Clock::now();
    isKnown = true;
    const std::string page = json["page"];
    if (!json["isOpen"].get<bool>()) {
        pages.erase(page);
    } else if (pages.size() < maximalPages || pages.contains(page)) {
        pages[page] = lastSeen;
    }
    return true;
}

bool Presence::hasBeenAlone(std::chrono::seconds duration) {
    const std::lock_guard guard(lock);
    const auto now = Clock::now();
    std::erase_if(pages, [&](const auto& page) { return now - page.second > maximalSilence; });
    if (!pages.empty()) {
        lastSeen = now;
    }
    return isKnown && now - lastSeen > duration;
}

} // namespace ombrel
