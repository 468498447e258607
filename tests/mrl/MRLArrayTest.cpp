#include <mrl/MRLArrayCommon.h>

#include <support/CapturedLog.h>

#include <gmock/gmock.h>

#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using mrl::MRLArray;
using mrl::Uint32;
using testing::ElementsAre;

// Counts its live objects; a copy can be made to fail.
class Counted {
public:
    explicit Counted(int number) : value(number) { ++alive; }
    Counted(const Counted& other) : value(other.value) {
        if (copiesUntilFailure > 0 && --copiesUntilFailure == 0) {
            throw std::runtime_error("no copy");
        }
        ++alive;
        ++copied;
    }
    Counted& operator=(const Counted&) = delete;
    virtual ~Counted() {
        --alive;
        ++destroyed;
    }

    int value;

    static inline int alive = 0;
    static inline int copied = 0;
    static inline int destroyed = 0;
    static inline int copiesUntilFailure = 0; // 0: none fails
};

class Arrays : public testing::Test {
protected:
    Arrays() { resetCounts(); }
    ~Arrays() override {
        Counted::copiesUntilFailure = 0;
        EXPECT_EQ(Counted::alive, 0) << "elements were left behind";
    }

    static void resetCounts() { Counted::copied = Counted::destroyed = 0; }

    static MRLArray<Counted> numbered(int count) {
        MRLArray<Counted> array;
        for (int i = 0; i < count; ++i) {
            array.append(Counted(i));
        }
        return array;
    }

    static std::vector<int> valuesOf(const MRLArray<Counted>& array) {
        std::vector<int> values;
        for (const Counted& element : array) {
            values.push_back(element.value);
        }
        return values;
    }

    static std::vector<int> upTo(int count) {
        std::vector<int> values(static_cast<std::size_t>(count));
        std::iota(values.begin(), values.end(), 0);
        return values;
    }
};

TEST_F(Arrays, StartsEmptyWithRoomForEightWhichDoublesWhenAnElementMoreIsNeeded) {
    MRLArray<Counted> array;
    EXPECT_EQ(array.size(), 0U);
    EXPECT_EQ(array.begin(), array.end());
    Uint32 capacity = 8;
    for (Uint32 count = 0; count <= 65; ++count) {
        capacity *= count > capacity ? 2 : 1;
        ASSERT_EQ(array.capacity(), capacity) << count;
        ASSERT_EQ(array.size(), count);
        array.append(Counted(static_cast<int>(count)));
    }
    EXPECT_EQ(valuesOf(array), upTo(66));
}

TEST_F(Arrays, AnAppendCopiesTheNewElementAndGrowthTheOldOnesTooWhichItDestroys) {
    MRLArray<Counted> array = numbered(7);
    const Counted element(7);
    resetCounts();
    array.append(element);
    EXPECT_EQ(Counted::copied, 1);
    EXPECT_EQ(Counted::destroyed, 0);
    array.append(element);
    EXPECT_EQ(Counted::copied, 1 + 9);
    EXPECT_EQ(Counted::destroyed, 8);
}

TEST_F(Arrays, AnElementOfItsOwnCanBeAppendedWhileTheArrayGrows) {
    MRLArray<std::string> array;
    for (int i = 0; i < 8; ++i) {
        array.append("a text that lives outside its object, number " + std::to_string(i));
    }
    array.append(array[3]);
    array.append(array[8]);
    EXPECT_EQ(array.capacity(), 16U);
    EXPECT_EQ(array[8], "a text that lives outside its object, number 3");
    EXPECT_EQ(array[9], array[8]);
}

TEST_F(Arrays, ClearDestroysTheElementsAndInstallsAnotherBlockWithRoomForEight) {
    MRLArray<Counted> array = numbered(20);
    const Counted* const block = array.begin();
    resetCounts();
    array.clear();
    EXPECT_EQ(Counted::destroyed, 20);
    EXPECT_EQ(array.size(), 0U);
    EXPECT_EQ(array.capacity(), 8U);
    EXPECT_NE(array.begin(), block);
    array.append(Counted(5));
    EXPECT_THAT(valuesOf(array), ElementsAre(5));
}

TEST_F(Arrays, ACopyTakesItsCapacityFromTheSourcesCapacity) {
    MRLArray<Counted> source = numbered(17);
    ASSERT_EQ(source.capacity(), 32U);
    const MRLArray<Counted> copy(source);
    EXPECT_EQ(copy.capacity(), 32U);
    EXPECT_EQ(valuesOf(copy), upTo(17));
    source.clear();
    EXPECT_EQ(valuesOf(copy), upTo(17)) << "a copy is independent";
    MRLArray<Counted> empty(source);
    EXPECT_EQ(empty.capacity(), 8U);
    empty.append(Counted(5));
    EXPECT_EQ(source.size(), 0U);
}

TEST_F(Arrays, AssignmentReplacesTheElementsAndToItselfChangesNothing) {
    MRLArray<Counted> target = numbered(20);
    const MRLArray<Counted> source = numbered(3);
    resetCounts();
    target = source;
    EXPECT_EQ(valuesOf(target), upTo(3));
    EXPECT_EQ(target.capacity(), 8U);
    EXPECT_EQ(Counted::destroyed, 20);
    EXPECT_EQ(Counted::copied, 3);
    const MRLArray<Counted>& itself = target;
    target = itself;
    EXPECT_EQ(valuesOf(target), upTo(3));
    EXPECT_EQ(Counted::copied, 3);
}

TEST_F(Arrays, AFailureDuringAnAppendLeavesTheArrayAsItWasWithAndWithoutGrowth) {
    for (const auto& [count, copies] : {std::pair(3, 1), std::pair(8, 9)}) {
        for (int failing = 1; failing <= copies; ++failing) {
            MRLArray<Counted> array = numbered(count);
            const Counted* const block = array.begin();
            const Counted element(8);
            Counted::copiesUntilFailure = failing;
            EXPECT_THROW(array.append(element), std::runtime_error) << "copy " << failing;
            EXPECT_EQ(valuesOf(array), upTo(count));
            EXPECT_EQ(array.capacity(), 8U);
            EXPECT_EQ(array.begin(), block);
            EXPECT_EQ(Counted::alive, count + 1);
        }
    }
}

TEST_F(Arrays, AFailureDuringACopyOrAnAssignmentLeavesBothAsTheyWereAndNothingBehind) {
    const MRLArray<Counted> source = numbered(5);
    MRLArray<Counted> target = numbered(2);
    for (int failing = 1; failing <= 5; ++failing) {
        Counted::copiesUntilFailure = failing;
        EXPECT_THROW(MRLArray<Counted>{source}, std::runtime_error) << "copy " << failing;
        Counted::copiesUntilFailure = failing;
        EXPECT_THROW(target = source, std::runtime_error) << "copy " << failing;
        EXPECT_EQ(valuesOf(source), upTo(5));
        EXPECT_EQ(valuesOf(target), upTo(2));
        EXPECT_EQ(Counted::alive, 7);
    }
}

TEST_F(Arrays, ElementsOfGreatAlignmentLieAligned) {
    struct alignas(64) Aligned {
        char byte;
    };
    MRLArray<Aligned> array;
    for (int i = 0; i < 9; ++i) {
        array.append({});
    }
    for (const Aligned& element : array) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&element) % 64, 0U);
    }
}

TEST_F(Arrays, AnElementCanBeChangedInItsPlace) {
    MRLArray<Counted> array = numbered(3);
    array[1].value = 7;
    EXPECT_THAT(valuesOf(array), ElementsAre(0, 7, 2));
}

// What `action` logs as a broken assertion before it raises the structured exception with code 7.
template <typename Action>
std::vector<std::string> assertionsOf(Action action) {
    const test::CapturedLog captured;
    try {
        action();
        ADD_FAILURE() << "nothing was raised";
    } catch (const mrl::Exception&) {
        ADD_FAILURE() << "a handler of mrl::Exception saw it";
    } catch (const mrl::StructuredException& raised) {
        EXPECT_EQ(raised.code, 7U);
    }
    return captured.texts("mrl.assertion");
}

TEST_F(Arrays, AnIndexAtOrBeyondTheSizeIsLoggedAndRaised) {
    constexpr const char* BROKEN = "MRLArrayCommon:277 assertion failed: index < size()";
    MRLArray<Counted> array = numbered(3);
    const MRLArray<Counted>& unchangeable = array;
    for (const Uint32 index : {3U, 4U, 8U, 0xFFFFFFFFU}) {
        EXPECT_THAT(assertionsOf([&] { static_cast<void>(array[index]); }), ElementsAre(BROKEN));
        EXPECT_THAT(assertionsOf([&] { static_cast<void>(unchangeable[index]); }),
                    ElementsAre(BROKEN));
    }
    EXPECT_THAT(assertionsOf([] { static_cast<void>(MRLArray<Counted>()[0]); }),
                ElementsAre(BROKEN));
    const test::CapturedLog captured;
    EXPECT_EQ(unchangeable[2].value, 2);
    EXPECT_THAT(captured.lines(), testing::IsEmpty());
}

TEST_F(Arrays, ABlockThatThirtyTwoBitsCannotMeasureIsLoggedAndRaised) {
    // The smallest element of which eight do not fit.
    struct Huge {
        char bytes[0x1FFFFFFF];
    };
    EXPECT_THAT(assertionsOf([] { const MRLArray<Huge> array; }),
                ElementsAre("MRLArrayRep:107 assertion failed: initialCapacity <= "
                            "(Uint32(0xffffffffU)-sizeof(ArrayRep<T>))/sizeof(T)"));
}

TEST_F(Arrays, TheCapacityIsEightDoubledAsFarAsThirtyTwoBitsGo) {
    const auto capacityFor = &mrl::ArrayRep<int>::capacityFor;
    EXPECT_EQ(capacityFor(0), 8U);
    EXPECT_EQ(capacityFor(8), 8U);
    EXPECT_EQ(capacityFor(9), 16U);
    EXPECT_EQ(capacityFor(16), 16U);
    EXPECT_EQ(capacityFor(17), 32U);
    EXPECT_EQ(capacityFor(0x7FFFFFFF), 0x80000000U);
    EXPECT_EQ(capacityFor(0x80000000), 0x80000000U);
    EXPECT_EQ(capacityFor(0x80000001), 0x80000001U);
    EXPECT_EQ(capacityFor(0xFFFFFFFF), 0xFFFFFFFFU);
}

} // namespace
