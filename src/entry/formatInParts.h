#pragma once

#include "config/FormattingConfig.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ca {
class AnalysisResult;
}

namespace ca::formatting {

enum class CommentLines : std::uint8_t;
class TokenReader;
struct TreeFormatRequest;

/// Characters of a part, the nodes for which stay in a processor's cache.
constexpr std::size_t usualPartLength = 65536;

/// Formats an analyzed text part by part, as a FormatPass over the tree of the whole text would. The tree of
/// a part and its tokens end before the next one is made, so what a long text takes for them depends on its
/// longest statement. The last statement of a part begins less than `partLength` 16-bit characters after the
/// first one, and may be longer than that.
std::u16string formatInParts(const ca::AnalysisResult& analysis, TokenReader& reader,
                             CommentLines commentLines, const std::shared_ptr<FormattingConfig>& config,
                             std::size_t partLength = usualPartLength);

/// Formats the text of a request, which has to parse, with these options: in parts if there is a reader.
std::u16string formatSource(const TreeFormatRequest& request,
                            const std::shared_ptr<FormattingConfig>& config);

} // namespace ca::formatting
