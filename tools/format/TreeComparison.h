#pragma once

#include "format/MarkPairing.h"

#include <string>
#include <vector>

namespace ombrel {

/// A syntax tree with its text and marks. Keeps all by reference.
struct MarkedTree {
    const std::u16string& text;
    const Marks& marks;
    const SyntaxNode& root;
};

/// Adds what is different between two syntax trees to the differences. A node that differs is looked at no
/// further, and neither are elements of a list that have no counterpart at the same mark. Takes no more of
/// the call stack for a deep tree than for a flat one.
void compareTrees(const MarkedTree& before, const MarkedTree& after, const Pairing& pairing,
                  std::vector<Difference>& differences);

} // namespace ombrel
