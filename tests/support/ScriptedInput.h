#pragma once

#include <mrl/LineInput.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace test {

/// What a person types, and does before each line.
class ScriptedInput final : public mrl::LineInput {
public:
    void types(const std::string& line, std::function<void()> before = nullptr) {
        m_lines.emplace_back(line, std::move(before));
    }
    void pressesEnter(int times) {
        for (int i = 0; i < times; ++i) {
            types("");
        }
    }

    /// The answer to each question after the typed lines; the input's first question is number 1.
    /// At first the input has ended then.
    std::function<std::optional<std::string>(int asked)> answer = [](int /*asked*/) {
        return std::nullopt;
    };
    int asked = 0;

    std::optional<std::string> line(const std::function<bool()>& stop) override {
        if (stop()) {
            return std::nullopt;
        }
        ++asked;
        std::optional<std::string> text = m_lines.empty() ? answer(asked) : nextTyped();
        return stop() ? std::nullopt : text;
    }

private:
    std::string nextTyped() {
        const auto [text, before] = m_lines.front();
        m_lines.pop_front();
        if (before) {
            before();
        }
        return text;
    }

    std::deque<std::pair<std::string, std::function<void()>>> m_lines;
};

} // namespace test
