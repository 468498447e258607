#include <mrl/Exception.h>

namespace mrl {

Exception::~Exception() = default;

} // namespace mrl
