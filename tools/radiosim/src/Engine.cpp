#include "EngineImpl.h"

#include <algorithm>
#include <new>
#include <utility>

namespace radiosim {

Engine::Engine(Scenario scenario) : m_impl(std::make_unique<Impl>(std::move(scenario))) {}

Engine::~Engine() {
    // While all of the engine is there: a running callback may use it.
    m_impl->notifier().stop();
}

const nativewifi::Api& Engine::api() const {
    return m_impl->table;
}

void* Engine::allocateMemory(DWORD size) {
    void* block = nullptr;
    try {
        m_impl->answer("WlanAllocateMemory", {{"size", size}}, {},
                       [&](const Impl::Effects&, Json&) {
                           block = m_impl->allocateMemory(size);
                           return DWORD{ERROR_SUCCESS};
                       });
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return block;
}

DWORD Engine::notSimulated(const char* function) {
    return m_impl->answer(function, Json::object(), {},
                          [](const Impl::Effects&, Json&) { return DWORD{ERROR_NOT_SUPPORTED}; });
}

std::vector<Call> Engine::calls() const {
    return m_impl->log.calls();
}

std::vector<std::string> Engine::callTexts() const {
    std::vector<std::string> texts;
    for (const Call& call : calls()) {
        texts.push_back(call.text());
    }
    return texts;
}

std::vector<std::string> Engine::callNames() const {
    std::vector<std::string> names;
    for (const Call& call : calls()) {
        names.push_back(call.function);
    }
    return names;
}

std::size_t Engine::callCount(std::string_view function) const {
    const std::vector<Call> all = calls();
    return static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(),
                      [function](const Call& call) { return call.function == function; }));
}

void Engine::clearCalls() {
    m_impl->log.clear();
}

void Engine::onCall(std::function<void(const Call&)> hook) {
    m_impl->log.hook(std::move(hook));
}

void Engine::traceTo(std::function<void(std::string_view)> line) {
    m_impl->log.lines(std::move(line));
}

std::size_t Engine::openHandles() const {
    return m_impl->openHandles();
}

std::size_t Engine::liveBlocks() const {
    return m_impl->blocks().live().count;
}

std::size_t Engine::liveBytes() const {
    return m_impl->blocks().live().bytes;
}

Leaks Engine::leaks() const {
    return m_impl->leaks();
}

Leaks Engine::leaksOf(std::string_view function) const {
    const Blocks::Sum sum = m_impl->blocks().liveOf(function);
    return {.blocks = sum.count, .bytes = sum.bytes};
}

Leaks Engine::handedOutBy(std::string_view function) const {
    const Blocks::Sum sum = m_impl->blocks().handedOutBy(function);
    return {.blocks = sum.count, .bytes = sum.bytes};
}

std::size_t Engine::badFrees() const {
    return m_impl->blocks().badFrees();
}

std::vector<std::string> Engine::unfiredFaults() const {
    return m_impl->faults.unfired();
}

void Engine::setRadio(std::size_t interfaceIndex, std::size_t phyIndex,
                      std::optional<std::int32_t> software, std::optional<std::int32_t> hardware) {
    m_impl->setRadio(interfaceIndex, phyIndex, software, hardware);
}

void Engine::setPhys(std::size_t interfaceIndex, std::vector<Phy> phys) {
    m_impl->change(interfaceIndex,
                   [&](Impl::LiveInterface& live) { live.facts.phys = std::move(phys); });
}

void Engine::setAccessPoints(std::size_t interfaceIndex, std::vector<AccessPoint> accessPoints) {
    m_impl->change(interfaceIndex, [&](Impl::LiveInterface& live) {
        live.facts.accessPoints = std::move(accessPoints);
    });
}

void Engine::setConnection(std::size_t interfaceIndex, std::optional<Connection> connection) {
    m_impl->change(interfaceIndex, [&](Impl::LiveInterface& live) {
        live.facts.connection = std::move(connection);
    });
}

void Engine::setState(std::size_t interfaceIndex, std::optional<std::int32_t> state) {
    m_impl->change(interfaceIndex, [&](Impl::LiveInterface& live) { live.facts.state = state; });
}

void Engine::removeInterface(std::size_t interfaceIndex) {
    m_impl->change(interfaceIndex, [](Impl::LiveInterface& live) { live.removed = true; });
}

void Engine::stopService(DWORD code) {
    m_impl->stopService(code);
}

void Engine::startService() {
    m_impl->startService();
}

void Engine::addFault(Fault fault) {
    m_impl->addFault(std::move(fault));
}

void Engine::clearFaults() {
    m_impl->faults.clear();
}

void Engine::notify(std::uint32_t source, std::uint32_t code, std::vector<std::uint8_t> data) {
    notifyFrom(0, source, code, std::move(data));
}

void Engine::notifyFrom(std::size_t interfaceIndex, std::uint32_t source, std::uint32_t code,
                        std::vector<std::uint8_t> data) {
    m_impl->notify(interfaceIndex, {{}, source, code, std::move(data)});
}

void Engine::settle() {
    m_impl->notifier().settle();
}

} // namespace radiosim
