// The blocks of memory that the interface hands out: how long they are, and the structures in them.
#pragma once

#include <capture/CaptureFile.h>

#include <nativewifi/WlanTypes.h>

#include <cstring>

namespace capture {

/// Where a list's items begin, and how long each is.
struct ListShape {
    const char* function;
    std::size_t countOffset;
    std::size_t begin;
    std::size_t item;
};

/// The shape of the list that `function` hands out; null for one that hands out none.
const ListShape* listShapeOf(std::string_view function);

/// A copy of the list at `block`, as long as its own counts say, LARGEST_BLOCK at most.
Bytes listAt(const ListShape& shape, const void* block);

/// What is wrong with the list in `bytes`; empty for nothing.
std::string mistakeIn(const ListShape& shape, const Bytes& bytes);

/// How many items of the list lie in `bytes`.
std::size_t itemsIn(const ListShape& shape, const Bytes& bytes);

/// The structure at `offset`, which must lie in `bytes` whole.
template <typename T>
T structureAt(const Bytes& bytes, std::size_t offset) {
    T value{};
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

template <typename T>
void putStructure(Bytes& bytes, std::size_t offset, const T& value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

} // namespace capture
