#pragma once

#include "lf/astapi/Node.h"
#include "ombrel/api.h"

namespace ca::astapi {

/// Names the language of a syntax tree: Ombrel.
struct CA {};

/// Whether the node is a `Function` inside another function or inside a method. Accepts a node of
/// any kind; false for null.
OMBREL_HOST_API bool isNestedFunction(const lf::astapi::Node<CA>* node);

} // namespace ca::astapi

namespace lf::astapi {

/// Where a node of an Ombrel tree starts.
template <>
class OMBREL_HOST_API NodeCustomization<Node<ca::astapi::CA>> {
public:
    /// Line of the node's first character, from 1.
    int getLine() const;

    /// Column of the node's first character: 16-bit characters, from 1.
    int getColumn() const;
};

} // namespace lf::astapi
