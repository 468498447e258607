#include <tesk5/RunContext.h>

#include <utility>

namespace tesk5 {

namespace {

constinit thread_local RunContext* t_current = nullptr;

RunContext& ofProcess() {
    // Never destroyed: other threads may ask for the end of the run until the process ends.
    static auto* const context = // NOLINT(cppcoreguidelines-owning-memory)
        new RunContext(Registry::instance());
    return *context;
}

} // namespace

RunContext& RunContext::current() {
    return t_current != nullptr ? *t_current : ofProcess();
}

RunContext::Scope::Scope(RunContext& context)
    : m_outer(std::exchange(t_current, &context)), m_language(context.language) {}

RunContext::Scope::~Scope() {
    t_current = m_outer;
}

} // namespace tesk5
