#include "format/Formatter.h"

#include "format/Companion.h"
#include "format/LineEngine.h"

#include <utility>

namespace ombrel {

namespace {

Result<TreeResult> formatWithTree(const std::u16string& text, const FileOptions& options,
                                  const std::vector<LineRange>& ranges, const Suppression& suppression,
                                  FormatRecord* record) {
    static const TreeFormatter treeFormatter = findTreeFormatter();
    if (!treeFormatter) {
        return fail(Code::MissingTreeEngine, missingTreeEngine);
    }
    return formatTree(text, getTreeOptions(options.formattingJson), treeFormatter, ranges, suppression,
                      record);
}

} // namespace

Result<TreeResult> formatText(const std::u16string& text, const FileOptions& options,
                              const std::vector<LineRange>& ranges, const Suppression& suppression,
                              FormatRecord* record) {
    if (options.engine == Engine::Tree) {
        return formatWithTree(text, options, ranges, suppression, record);
    }
    return formatLines(text, options.line, ranges, suppression).map([](Edits edits) {
        return TreeResult{std::move(edits), {}};
    });
}

} // namespace ombrel
