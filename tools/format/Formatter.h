#pragma once

#include "format/FormatRecord.h"
#include "format/Options.h"
#include "format/TreeEngine.h"

#include <string>
#include <vector>

namespace ombrel {

/// Formats a text with the engine that its options name, as formatLines() or formatTree() does. The tree
/// engine comes from the companion library; fails with MissingTreeEngine if that isn't there. Only the tree
/// engine has notes.
///
/// Where there is a record, what happens is added to it.
///
/// Whether the text's comments suppress the whole file is the caller's to look at. May be called on several
/// threads at once.
Result<TreeResult> formatText(const std::u16string& text, const FileOptions& options,
                              const std::vector<LineRange>& ranges, const Suppression& suppression,
                              FormatRecord* record = nullptr);

} // namespace ombrel
