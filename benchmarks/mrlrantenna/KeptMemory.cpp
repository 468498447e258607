// Freed memory stays with this program. The C library would hand blocks of megabytes back to the
// system and ask for them again in each refresh of a vast room; what that costs is the kernel's,
// and docs/performance.md gives it by itself.
#include <malloc.h>

#include <climits>

namespace {

[[maybe_unused]] const bool kept =
    mallopt(M_MMAP_MAX, 0) == 1 && mallopt(M_TRIM_THRESHOLD, INT_MAX) == 1;

} // namespace
