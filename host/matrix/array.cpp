#include "matrix/array.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

namespace matrix::detail {

namespace {

std::size_t getElementSize(kzClassID classID, kzComplexity complexity) {
    if (classID != kzCHAR_CLASS || complexity != kzREAL) {
        throw std::invalid_argument("this host makes real arrays of 16-bit characters only");
    }
    return sizeof(char16_t);
}

std::size_t getByteCount(const DimensionSpan& dimensions, std::size_t elementSize) {
    std::size_t bytes = elementSize;
    for (const std::size_t* dimension = dimensions.first; dimension != dimensions.last; ++dimension) {
        if (*dimension != 0 && bytes > std::numeric_limits<std::size_t>::max() / *dimension) {
            throw std::bad_alloc();
        }
        bytes *= *dimension;
    }
    return bytes;
}

} // namespace

void kzDestroy_deleter::operator()(kzArray_tag* array) const noexcept {
    if (array == nullptr) {
        return;
    }
    ::operator delete(array->data);
    delete[] array->dimensions;
    delete array;
}

std::unique_ptr<kzArray_tag, kzDestroy_deleter>
do_create_uninitnumeric(const DimensionSpan& dimensions, kzClassID classID, kzComplexity complexity) {
    if (dimensions.last - dimensions.first < 2) {
        throw std::invalid_argument("an array has two dimensions or more");
    }
    const auto count = static_cast<std::size_t>(dimensions.last - dimensions.first);
    const std::size_t bytes = getByteCount(dimensions, getElementSize(classID, complexity));

    std::unique_ptr<kzArray_tag, kzDestroy_deleter> array(
        new kzArray_tag{classID, complexity, count, nullptr, nullptr});
    array->dimensions = new std::size_t[count];
    std::copy(dimensions.first, dimensions.last, array->dimensions);
    if (bytes != 0) {
        array->data = ::operator new(bytes);
    }
    return array;
}

} // namespace matrix::detail
