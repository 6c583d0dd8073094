#pragma once

#include "format/GapRules.h"
#include "text/Edit.h"

#include <functional>

namespace ombrel {

/// Moves the lines of matrix and cell literals with the statements that they are in. The formatter leaves the
/// start of such a line alone and indents the statement:
///
///     if a                  if a
///     x = [1 2                  x = [1 2
///          3 4];      →              3 4];
///     end                   end
///
/// `makeEdits` makes the edits that the choices come to, and is called if rows may move: where the line of a
/// statement isn't edited, or starts with something else, its rows stay. A row that would have to go to the
/// left of the first column starts there.
void moveRows(const GapRuleInput& input, const std::function<Edits()>& makeEdits, GapChoices& choices);

} // namespace ombrel
