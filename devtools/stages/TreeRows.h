#pragma once

#include "stages/Row.h"

#include <ca/formatting/TreeFormat.h>

#include <memory>

namespace ombrel {

// The tree formatter's own stages. All need a text that parses. Comment lines are aligned, as they are where
// files are formatted.

/// Tokens and the gaps between them, a row for each.
void visitLeafRows(const ca::formatting::ParsedSource& source, const RowVisitor& visit);

/// The leaves in their containers: a row for each container before the rows of what is in it.
void visitTextTreeRows(const ca::formatting::ParsedSource& source, const RowVisitor& visit);

/// The leaves in their levels of indentation, likewise.
void visitIndentTreeRows(const ca::formatting::ParsedSource& source, const RowVisitor& visit);

/// A row for each gap with what the formatter makes of it under the configuration, which has to be free of
/// issues.
void visitDecisionRows(const ca::formatting::ParsedSource& source,
                       const std::shared_ptr<const ca::config::Config>& config, const RowVisitor& visit);

} // namespace ombrel
