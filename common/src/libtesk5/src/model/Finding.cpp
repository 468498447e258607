#include <tesk5/Finding.h>

#include <tesk5/Texts.h>

namespace tesk5 {

std::string Finding::text() const {
    return fillPlaceholders(translation(key).utf8(), variables);
}

} // namespace tesk5
