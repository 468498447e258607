#include <tesk5/TeskException.h>

namespace tesk5 {

TeskException::~TeskException() = default;

} // namespace tesk5
