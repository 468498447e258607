// The live view as text: what the model knows, in the lines of one frame.
#pragma once

#include <watch/Model.h>

#include <string>
#include <vector>

namespace watch {

struct Size {
    std::size_t columns = 80;
    std::size_t rows = 24;

    friend bool operator==(const Size&, const Size&) = default;
};

/// The frame at `now`: at most `size.rows` lines of fewer than `size.columns` columns, because
/// terminals differ in what they do after the last column. Where there is little room, the parts
/// that matter least fall away. Texts are in the language in force.
/// \param colours whether escape sequences for colours are among the text; there are no others
std::vector<std::string> frame(const Model& model, Moment now, Size size, bool colours);

} // namespace watch
