// The block behind an MRLArray: element count, capacity, then the elements, in one allocation.
#pragma once

#include <mrl/AssertionFailure.h>
#include <mrl/Exception.h>
#include <mrl/Types.h>

#include <memory>
#include <new>

namespace mrl {

/// Head of a block; the elements follow it directly. Owned and measured by MRLArray.
template <typename T>
struct alignas(alignof(T) > alignof(Uint32) ? alignof(T) : alignof(Uint32)) ArrayRep {
    Uint32 size;
    Uint32 capacity;

    T* elements() { return reinterpret_cast<T*>(this + 1); }
    const T* elements() const { return reinterpret_cast<const T*>(this + 1); }

    /// An empty block with room for `initialCapacity` elements.
    /// Failure: a size that 32 bits cannot hold is logged as an assertion and raised;
    /// std::bad_alloc
    static ArrayRep* create(Uint32 initialCapacity) {
        // The line is the assertion's name in the log: it stays the same when this file changes.
        constexpr int LINE = 107;
        if (!(initialCapacity <= (Uint32(0xffffffffU) - sizeof(ArrayRep<T>)) / sizeof(T))) {
            AssertionFailure::logAssert(
                "MRLArrayRep", LINE,
                "initialCapacity <= (Uint32(0xffffffffU)-sizeof(ArrayRep<T>))/sizeof(T)");
            throw StructuredException{AssertionFailure::CODE};
        }
        void* block =
            ::operator new (sizeof(ArrayRep<T>) + sizeof(T) * std::size_t{initialCapacity},
                            std::align_val_t{alignof(ArrayRep<T>)});
        // The array owns the block, and destroy() frees it.
        return ::new (block) ArrayRep<T>{0, initialCapacity};
    }

    /// Destroys every element and frees the block.
    static void destroy(ArrayRep* rep) noexcept {
        std::destroy_n(rep->elements(), rep->size);
        ::operator delete (rep, std::align_val_t{alignof(ArrayRep<T>)});
    }

    /// 8 doubled until it reaches `needed`; `needed` itself when doubling would pass 32 bits.
    static Uint32 capacityFor(Uint32 needed) {
        Uint32 capacity = INITIAL_CAPACITY;
        while (capacity < needed) {
            if (capacity > 0xffffffffU / 2) {
                return needed;
            }
            capacity *= 2;
        }
        return capacity;
    }

    static constexpr Uint32 INITIAL_CAPACITY = 8;
};

} // namespace mrl
