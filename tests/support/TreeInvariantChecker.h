#pragma once

#include "tree/FormatTree.h"

#include <string>
#include <vector>

/// Every broken rule of a finished tree over `text`, a line each that begins with the rule's number; empty
/// for a sound tree:
///
/// 1. `getNodes()` lists each node once, the outermost level, which has no parent, first.
/// 2. What hangs in the text tree or the indentation tree is listed, and what is listed hangs in one of them.
/// 3. A container has children and is the parent of each of them; the root has no parent.
/// 4. The chain of leaves visits the leaves of the text tree from left to right, backwards it is the reverse,
///    and both its ends are open.
/// 5. Each leaf has a level and is exactly once among the members of that level, and so does each level
///    but the outermost in its parent. Members are in order of creation.
/// 6. The tokens of the leaves are the tree's tokens one after the other, and their lexemes are the text.
/// 7. A run has a comment in it exactly if its node is a CommentNode.
std::vector<std::string> checkTreeInvariants(const std::u16string& text,
                                             const ca::formatting::FormatTree& tree);
