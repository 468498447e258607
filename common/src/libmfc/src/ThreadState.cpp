// The state hangs on fiber-local storage: the runtime library destroys thread_local objects of this
// tool chain after it has freed their memory.
#include "ThreadState.h"

#include <new>
#include <utility>

namespace afx {

namespace {

void CALLBACK freeState(void* state) {
    std::default_delete<ThreadState>()(static_cast<ThreadState*>(state));
}

} // namespace

ThreadState& threadState() {
    // FLS_OUT_OF_INDEXES when the process has used them up: treated as a lack of memory
    static const DWORD slot = FlsAlloc(freeState);
    if (void* const state = FlsGetValue(slot)) {
        return *static_cast<ThreadState*>(state);
    }
    auto state = std::make_unique<ThreadState>();
    if (!FlsSetValue(slot, state.get())) {
        throw std::bad_alloc();
    }
    return *state.release();
}

void keepException() {
    ThreadState& state = threadState();
    if (state.pending == nullptr) {
        state.pending = std::current_exception();
    }
    // Wakes a loop that called the handler from inside GetMessage().
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void rethrowPending() {
    if (threadState().pending != nullptr) {
        std::rethrow_exception(std::exchange(threadState().pending, nullptr));
    }
}

} // namespace afx
