#pragma once

#include <span>
#include <string_view>

namespace ombrel {

/// A file of the page, compiled into the program.
struct Asset {
    std::string_view path; ///< "/app.js"; "/" is the page
    std::string_view type; ///< "text/javascript; charset=utf-8"
    std::string_view content;
};

/// All of them. Nothing else is served: no path of a request is ever used to open a file.
std::span<const Asset> getAssets();

} // namespace ombrel
