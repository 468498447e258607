// The growable array of Basekit.
#pragma once

#include <mrl/MRLArrayRep.h>

#include <utility>

namespace mrl {

/// Elements by value in one block that grows by doubling and never shrinks but by clear().
///
/// T must be copy-constructible. References to elements are valid until the next append(), clear()
/// or assignment. Not synchronised.
template <typename T>
class MRLArray {
public:
    /// Empty, with room for 8.
    MRLArray() : m_rep(Rep::create(Rep::INITIAL_CAPACITY)) {}
    /// Copies every element; the capacity is 8 doubled until it reaches `other`'s.
    MRLArray(const MRLArray& other)
        : m_rep(copyOf(*other.m_rep, Rep::capacityFor(other.capacity()))) {}
    MRLArray& operator=(const MRLArray& other) {
        if (this != &other) {
            MRLArray copy(other);
            std::swap(m_rep, copy.m_rep);
        }
        return *this;
    }
    ~MRLArray() { Rep::destroy(m_rep); }

    Uint32 size() const { return m_rep->size; }
    Uint32 capacity() const { return m_rep->capacity; }

    /// The element at `index`.
    /// Failure: an index at or beyond size() is logged as an assertion and raised as a
    /// StructuredException
    T& operator[](Uint32 index) {
        assertIndex(index);
        return m_rep->elements()[index];
    }
    const T& operator[](Uint32 index) const {
        assertIndex(index);
        return m_rep->elements()[index];
    }

    const T* begin() const { return m_rep->elements(); }
    const T* end() const { return m_rep->elements() + m_rep->size; }

    /// Adds a copy of `element` (which may be one of this array's own) at the end. When T's copy
    /// constructor throws, the array is as it was.
    void append(const T& element) {
        if (m_rep->size < m_rep->capacity) {
            ::new (static_cast<void*>(m_rep->elements() + m_rep->size)) T(element);
            ++m_rep->size;
            return;
        }
        // The copy in the new block is made before the old one goes: `element` may live in there.
        Rep* grown = copyOf(*m_rep, Rep::capacityFor(m_rep->size + 1));
        try {
            ::new (static_cast<void*>(grown->elements() + grown->size)) T(element);
        } catch (...) {
            Rep::destroy(grown);
            throw;
        }
        ++grown->size;
        Rep::destroy(std::exchange(m_rep, grown));
    }

    /// Destroys every element, frees the block and starts again with room for 8.
    void clear() {
        Rep* empty = Rep::create(Rep::INITIAL_CAPACITY);
        Rep::destroy(std::exchange(m_rep, empty));
    }

private:
    using Rep = ArrayRep<T>;

    static Rep* copyOf(const Rep& source, Uint32 capacity) {
        Rep* copy = Rep::create(capacity);
        try {
            for (; copy->size < source.size; ++copy->size) {
                ::new (static_cast<void*>(copy->elements() + copy->size))
                    T(source.elements()[copy->size]);
            }
        } catch (...) {
            Rep::destroy(copy);
            throw;
        }
        return copy;
    }

    void assertIndex(Uint32 index) const {
        // The line is the assertion's name in the log: it stays the same when this file changes.
        constexpr int LINE = 277;
        if (!(index < size())) {
            AssertionFailure::logAssert("MRLArrayCommon", LINE, "index < size()");
            throw StructuredException{AssertionFailure::CODE};
        }
    }

    Rep* m_rep; // never null
};

} // namespace mrl
