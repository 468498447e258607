#include <watch/BigDigits.h>

namespace watch {

namespace {

using Rows = std::array<std::string_view, DIGIT_ROWS>;

constexpr Rows DIGITS[] = {
    {"###", "# #", "# #", "# #", "###"}, {" # ", "## ", " # ", " # ", "###"},
    {"###", "  #", "###", "#  ", "###"}, {"###", "  #", " ##", "  #", "###"},
    {"# #", "# #", "###", "  #", "  #"}, {"###", "#  ", "###", "  #", "###"},
    {"###", "#  ", "###", "# #", "###"}, {"###", "  #", "  #", "  #", "  #"},
    {"###", "# #", "###", "# #", "###"}, {"###", "# #", "###", "  #", "###"},
};
constexpr Rows MINUS = {"   ", "   ", "###", "   ", "   "};
constexpr Rows GAP = {"   ", "   ", "   ", "   ", "   "};

const Rows& rowsOf(char character) {
    if (character >= '0' && character <= '9') {
        return DIGITS[character - '0'];
    }
    return character == '-' ? MINUS : GAP;
}

} // namespace

std::array<std::string, DIGIT_ROWS> bigDigits(std::string_view number) {
    std::array<std::string, DIGIT_ROWS> rows;
    for (const char character : number) {
        const Rows& digit = rowsOf(character);
        for (std::size_t row = 0; row < DIGIT_ROWS; ++row) {
            // A character cell is twice as high as it is wide.
            for (const char dot : digit[row]) {
                rows[row] += dot == '#' ? "██" : "  ";
            }
            rows[row] += "  ";
        }
    }
    return rows;
}

} // namespace watch
