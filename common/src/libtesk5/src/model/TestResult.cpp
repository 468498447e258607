#include <tesk5/TestResult.h>

#include <iterator>

namespace tesk5 {

namespace {

struct ResultKind {
    const char* name;
    int severity;
};

// By value.
constexpr ResultKind kinds[] = {
    {"PASS", 0},        {"WARN", 1},      {"FAIL", 5},
    {"CANNOTRUN", 3},   {"BADPARAMS", 4}, {"INTERNALERROR", 6},
    {"USERABORTED", 2}, {"COMPLETED", 0}, {"EXITEDABNORMALLY", 7},
};

} // namespace

std::optional<TestResult> TestResult::named(std::string_view name) {
    for (int value = 0; value < static_cast<int>(std::size(kinds)); ++value) {
        if (name == kinds[value].name) {
            return TestResult(value);
        }
    }
    return std::nullopt;
}

const char* TestResult::name() const {
    return kinds[m_value].name;
}

int TestResult::severity() const {
    return kinds[m_value].severity;
}

} // namespace tesk5
