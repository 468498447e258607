// Makes numbers, texts and arrays, with and without terminators, from the fuzzer's bytes.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>

namespace fuzz {

/// Each operation consumes a part of the bytes; when none are left, numbers are 0 and texts empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data, size) {}
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    bool empty() { return m_data.remaining_bytes() == 0; }
    bool flag() { return m_data.ConsumeBool(); }
    std::uint32_t number() { return m_data.ConsumeIntegral<std::uint32_t>(); }
    std::uint32_t number(std::uint32_t least, std::uint32_t most) {
        return m_data.ConsumeIntegralInRange<std::uint32_t>(least, most);
    }
    /// Any number, with a preference for `likely`.
    std::uint32_t number(std::initializer_list<std::uint32_t> likely) {
        const auto choice = number(0, static_cast<std::uint32_t>(likely.size()));
        return choice < likely.size() ? *std::next(likely.begin(), choice) : number();
    }
    /// At most `most` arbitrary bytes.
    std::string bytes(std::size_t most) { return m_data.ConsumeRandomLengthString(most); }

    /// Fills an array of characters or bytes with a text from the input, repeated to the end,
    /// either with a terminator after each or without any terminator.
    template <typename Unit, std::size_t SIZE>
    void fill(Unit (&array)[SIZE]) {
        std::string text = bytes(SIZE * sizeof(Unit));
        const bool terminated = text.empty() || flag();
        if (terminated) {
            text.append(sizeof(Unit), '\0');
        }
        auto* const memory = reinterpret_cast<char*>(array);
        for (std::size_t i = 0; i < sizeof array; ++i) {
            memory[i] = text[i % text.size()];
        }
        if (!terminated) {
            std::replace(std::begin(array), std::end(array), Unit(0), Unit(1));
        }
    }

private:
    FuzzedDataProvider m_data;
};

} // namespace fuzz
