// What each platform function may answer instead of success, documented or not: the material of the
// generated fault tables.
#pragma once

#include <radiosim/Engine.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace test {

struct FunctionErrors {
    const char* function;
    std::vector<std::uint32_t> codes; ///< empty: the documentation names none
};

/// One row a function of nativewifi::Api, from its own list. A client function has the errors of a
/// stopped, busy or restarted service too.
const std::vector<FunctionErrors>& documentedErrors();

/// Codes that no function's documentation names; ERROR_BUSY and the ends of the range among them.
inline constexpr std::uint32_t UNDOCUMENTED_ERRORS[] = {1,          170,        259,
                                                        0x7FFFFFFF, 0x80070005, 0xFFFFFFFF};

/// All codes to try at `function`; none for one that returns nothing.
std::vector<std::uint32_t> errorsOf(const std::string& function);

/// A place in a run: the nth call of a function, of an opcode where that matters.
struct Place {
    const char* function;
    std::uint32_t nth = 1;
    std::optional<std::uint32_t> opcode = {};

    radiosim::Fault failingWith(std::uint32_t code) const {
        return {.function = function, .nth = nth, .opcode = opcode, .code = code};
    }
    /// "WlanQueryInterface_opcode4_call2"
    std::string name() const;
};

/// The log's sentence for a failed interface query.
std::string querySentence(std::uint32_t code);

/// What a failed list query leaves behind; both empty for most codes.
struct ListFailure {
    std::vector<std::string> lines;
    std::vector<std::string> events;
};
ListFailure listFailure(std::uint32_t code);

/// Replaces the numbers of the lines in `lines` by "#" where `expected` has one: those lines move
/// with the source.
std::vector<std::string> withNumbersLike(const std::vector<std::string>& expected,
                                         std::vector<std::string> lines);

/// Checks that of what the radio handed out only that is still kept which the module keeps on
/// purpose, to the byte: answers to queries, the interface and BSS lists, and `handles` handles.
/// \param texts texts of GUIDs whose giving back has failed
void expectDeliberateLeaksAlone(const radiosim::Engine& radio, std::size_t handles,
                                std::size_t texts = 0);

/// Counts a combination that ran; the program prints their number when it ends.
void countCombination();

} // namespace test
