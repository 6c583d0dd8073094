#pragma once

#include "ombrel/api.h"

#include <cstddef>
#include <memory>

/// What the elements of an array are.
enum kzClassID : int {
    kzCHAR_CLASS = 4, ///< 16-bit characters
};

/// Whether the elements of an array have an imaginary part.
enum kzComplexity : int {
    kzREAL = 0,
};

/// A host array: a header, its dimensions and one block of elements in column order.
struct kzArray_tag {
    kzClassID classID;
    kzComplexity complexity;
    std::size_t numberOfDimensions;
    std::size_t* dimensions; ///< owned by the array
    void* data;              ///< owned by the array; null if it has no element
};

namespace matrix::detail {

/// Destroys an array that the host has made.
struct OMBREL_HOST_API kzDestroy_deleter {
    void operator()(kzArray_tag* array) const noexcept;
};

/// Dimensions as a range of pointers: the first one, and after the last.
struct DimensionSpan {
    const std::size_t* first;
    const std::size_t* last;
};

/// Makes an array whose elements are not set. The caller owns it.
///
/// Throws std::invalid_argument for a class or complexity that this host doesn't know or for fewer than two
/// dimensions, std::bad_alloc if the elements don't fit in memory.
OMBREL_HOST_API std::unique_ptr<kzArray_tag, kzDestroy_deleter>
do_create_uninitnumeric(const DimensionSpan& dimensions, kzClassID classID, kzComplexity complexity);

} // namespace matrix::detail
