#include "Machine.h"

namespace contract {

mrl::Json machine() {
    return mrl::Json::object();
}

} // namespace contract
