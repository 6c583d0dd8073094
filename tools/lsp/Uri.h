#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ombrel::lsp {

/// The absolute, normal path of a `file:` URI of this machine; nothing for any other URI.
std::optional<std::string> getPath(std::string_view uri);

/// The `file:` URI of an absolute path.
std::string makeUri(std::string_view path);

} // namespace ombrel::lsp
