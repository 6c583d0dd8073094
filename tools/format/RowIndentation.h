#pragma once

#include "format/EditSelection.h"
#include "format/GapRules.h"

namespace ombrel {

/// Moves the lines of matrix and cell literals with the statements that they are in. The formatter leaves the
/// start of such a line alone and indents the statement:
///
///     if a                  if a
///     x = [1 2                  x = [1 2
///          3 4];      →              3 4];
///     end                   end
///
/// Where the selection keeps the line of a statement from being edited, or where it starts with something
/// else, its rows stay. A row that would have to go to the left of the first column starts there.
void moveRows(const GapRuleInput& input, const EditSelection& selection, GapChoices& choices);

} // namespace ombrel
