#include "ca/astapi/CA.h"
#include "lf/astapi/getPageSize.h"

namespace {

bool isFunctionLike(const lf::astapi::Node<ca::astapi::CA>* node) {
    return node != nullptr && (node->kind == lf::astapi::NodeKind::Function ||
                               node->kind == lf::astapi::NodeKind::MethodDefinition);
}

} // namespace

namespace ca::astapi {

bool isNestedFunction(const lf::astapi::Node<CA>* node) {
    return node != nullptr && node->kind == lf::astapi::NodeKind::Function && isFunctionLike(node->parent);
}

} // namespace ca::astapi

namespace lf::astapi {

using CANode = Node<ca::astapi::CA>;

int NodeCustomization<CANode>::getLine() const {
    return static_cast<int>(static_cast<const CANode*>(this)->line);
}

int NodeCustomization<CANode>::getColumn() const {
    return static_cast<int>(static_cast<const CANode*>(this)->column);
}

std::size_t internal::getPageSize() {
    return 64 * 1024;
}

} // namespace lf::astapi
