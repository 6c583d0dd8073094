#pragma once

#include "diagnostics/Result.h"
#include "format/Options.h"
#include "format/Suppression.h"

#include <ca/formatting/TreeFormat.h>

#include <functional>
#include <memory>
#include <string>

namespace ombrel {

/// The tree formatter's operation. What it throws is reported as a problem of the text.
using TreeFormatter =
    std::function<ca::formatting::TreeFormatResult(const ca::formatting::TreeFormatRequest&)>;

struct TreeOptions {
    std::shared_ptr<const ca::config::Config> config; ///< the formatter's options, for any number of texts
    MixedLineEnds mixedLineEnds = MixedLineEnds::Refuse;
};

/// The options in a JSON text, {"formatting": {...}}. The same object for equal texts, so that each is read
/// once. May be called on several threads at once.
std::shared_ptr<const ca::config::Config> getTreeConfig(const std::u16string& json);

/// Lays out a text with the tree formatter. All lines of the result end as the first line of the text does,
/// in LF if the text has one line only.
///
/// Suppressed lines are laid out like all others and then put back as they were, so that what they would have
/// come to is never looked at.
///
/// Fails if the text doesn't parse (all its syntax errors), if its line ends are mixed, if the
/// formatter doesn't take the options, if suppressed lines can't be found again, or if the result isn't the
/// same program.
Result<std::u16string> formatTree(const std::u16string& text, const TreeOptions& options,
                                  const TreeFormatter& formatter, const Suppression& suppression = {});

} // namespace ombrel
