// The dialog's template as it stands in the program's resources.
#pragma once

#include <windows.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace test {

struct TemplateFrame {
    DWORD style = 0;
    DWORD exStyle = 0;
    short width = 0;
    short height = 0;
    std::string caption;
    int fontSize = 0;
    std::string font;
};

struct TemplateControl {
    int id = 0;
    std::string kind; ///< the window class: "#" and its number, or its name in capitals
    std::string text;
    std::array<short, 4> place{}; ///< x, y, width, height in dialog units
    DWORD style = 0;
};

/// Reads the public format of an extended dialog template.
class TemplateReader {
public:
    explicit TemplateReader(int id);

    bool extended = false;
    TemplateFrame frame;
    std::vector<TemplateControl> controls;

private:
    template <typename T>
    T take() {
        T value;
        std::memcpy(&value, m_at, sizeof value);
        m_at += sizeof value;
        return value;
    }
    std::string name();
    TemplateControl control();

    const char* m_start;
    const char* m_at;
};

} // namespace test
