// How a test ended.
#pragma once

#include <optional>
#include <string_view>

namespace tesk5 {

/// One of nine results. Its value is also the exit value that stands for it.
class TestResult {
public:
    static TestResult PASS() { return TestResult(0); }
    static TestResult WARN() { return TestResult(1); }
    static TestResult FAIL() { return TestResult(2); }
    static TestResult CANNOTRUN() {
        return TestResult(3);
    } ///< the conditions for a verdict are missing
    static TestResult BADPARAMS() { return TestResult(4); }
    static TestResult INTERNALERROR() { return TestResult(5); }
    static TestResult USERABORTED() { return TestResult(6); }
    static TestResult COMPLETED() {
        return TestResult(7);
    } ///< an interactive test that gives no verdict
    static TestResult EXITEDABNORMALLY() { return TestResult(8); }

    /// The result of that name; nothing for any other text.
    static std::optional<TestResult> named(std::string_view name);

    int value() const { return m_value; }
    /// The word of the result, as consoles and reports write it: "PASS".
    const char* name() const;
    /// Whether a run with this result counts as good: PASS or COMPLETED.
    bool good() const { return *this == PASS() || *this == COMPLETED(); }
    /// How bad the result is for a run: 0 for a good one, then WARN, USERABORTED, CANNOTRUN,
    /// BADPARAMS, FAIL, INTERNALERROR, EXITEDABNORMALLY.
    int severity() const;

    friend bool operator==(const TestResult&, const TestResult&) = default;

private:
    explicit TestResult(int value) : m_value(value) {}
    int m_value;
};

} // namespace tesk5
