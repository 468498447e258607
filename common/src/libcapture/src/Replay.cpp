#include <capture/Replay.h>

#include "Exchange.h"
#include "ReplayNotifier.h"

#include <mrl/Unicode.h>
#include <mrl/VirtualClock.h>

#include <algorithm>
#include <exception>

namespace capture {

namespace {

// Destructors make these calls: they must not throw.
constexpr std::string_view RELEASES[] = {"WlanCloseHandle", "WlanFreeMemory", "RpcStringFreeW"};

// What a call after the first difference returns where it cannot throw.
constexpr DWORD NO_ANSWER = ERROR_SERVICE_NOT_ACTIVE;

constexpr const char* ADAPTERS = "the list of adapters";

std::string describe(const Step& step) {
    if (const auto* call = std::get_if<Call>(&step.what)) {
        return call->request.text();
    }
    return std::holds_alternative<Adapters>(step.what) ? ADAPTERS : "the end of the run";
}

} // namespace

ReplayDiffers::ReplayDiffers(const Difference& difference)
    : std::runtime_error("line " + std::to_string(difference.line) + " of the capture has " +
                         difference.expected + ", asked was " + difference.asked) {}

class Replay::Impl final : public Exchange, private mrl::VirtualClock {
public:
    explicit Impl(Capture capture)
        : mrl::VirtualClock(capture.started), m_steps(std::move(capture.steps)),
          m_scopedClock(static_cast<mrl::Clock&>(*this)), m_inForce(*this) {}

    // --- Exchange ---

    Answer serve(const Request& request, const Pass& /*pass*/) override {
        std::unique_lock lock(m_mutex);
        deliverUntil(lock, Duration::max());
        const Step* step = next();
        const auto* call = step == nullptr ? nullptr : std::get_if<Call>(&step->what);
        if (m_difference || call == nullptr || !(call->request == request)) {
            return differ(request.text(), request.function);
        }
        ++m_next;
        lock.unlock();
        moveTo(step->at + call->took);
        return call->answer;
    }
    bool replays() const override { return true; }
    Registration registering(const mrl::Json& client, const Registration& given) override {
        const std::lock_guard lock(m_mutex);
        m_registrations[client.is_string() ? client.get<std::string>() : std::string()] = given;
        return given;
    }
    HANDLE handleNamed(const std::string& name) override {
        // An address of its own for each handle, never given twice.
        const std::lock_guard lock(m_mutex);
        Memory memory(new unsigned char[1]);
        void* const handle = memory.get();
        m_handles.push_back(std::move(memory));
        m_handleNames[handle] = name;
        handles.add(handle);
        return handle;
    }
    void* blockOf(const Block& block) override {
        if (!block.bytes) {
            return nullptr;
        }
        // Exactly as long as the captured one, so that a sanitizer sees a read past it.
        void* const copy = own(*block.bytes);
        blocks.add(copy);
        return copy;
    }
    mrl::Char* textOf(const std::string& utf8) override {
        const mrl::CharString text = mrl::toUtf16(utf8);
        const auto* const first = reinterpret_cast<const unsigned char*>(text.c_str());
        return static_cast<mrl::Char*>(
            own(Bytes(first, first + (text.size() + 1) * sizeof(mrl::Char))));
    }
    void release(const void* thing) override {
        const std::lock_guard lock(m_mutex);
        m_memory.erase(thing);
        if (const auto handle = m_handleNames.find(thing); handle != m_handleNames.end()) {
            m_registrations.erase(handle->second);
        }
    }

    // --- the replay's own ---

    Adapters adapters() {
        const std::lock_guard lock(m_mutex);
        const Step* step = next();
        const auto* list = step == nullptr ? nullptr : std::get_if<Adapters>(&step->what);
        if (m_difference || list == nullptr) {
            differ(ADAPTERS, {});
            return {};
        }
        ++m_next;
        moveTo(step->at);
        return *list;
    }
    std::optional<Difference> difference() const {
        const std::lock_guard lock(m_mutex);
        return m_difference;
    }

private:
    using Memory = std::unique_ptr<unsigned char[]>;

    // Local time is that of the PC that replays.
    std::chrono::minutes utcOffset(UtcTime time) override { return m_before.utcOffset(time); }
    // A sleep ends when what was captured in its time has happened.
    void sleep(Duration duration) override {
        mrl::VirtualClock::sleep(duration);
        std::unique_lock lock(m_mutex);
        deliverUntil(lock, now());
    }

    // Delivers the notifications that are next, those after `moment` excepted.
    void deliverUntil(std::unique_lock<std::mutex>& lock, Duration moment) {
        while (!m_notifier.isOwnThread() && !m_difference) {
            const Step* step = next();
            const auto* notification =
                step == nullptr ? nullptr : std::get_if<Notification>(&step->what);
            if (notification == nullptr || step->at > moment) {
                return;
            }
            ++m_next;
            const auto to = m_registrations.find(notification->client);
            if (to == m_registrations.end() || to->second.callback == nullptr) {
                continue;
            }
            const Registration registration = to->second;
            lock.unlock();
            moveTo(step->at);
            m_notifier.deliver(registration, *notification);
            lock.lock();
        }
    }

    const Step* next() const { return m_next < m_steps.size() ? &m_steps[m_next] : nullptr; }

    Answer differ(const std::string& asked, std::string_view function) {
        if (!m_difference) {
            const Step* step = next();
            m_difference = Difference{.line = step != nullptr   ? step->line
                                              : m_steps.empty() ? 2
                                                                : m_steps.back().line + 1,
                                      .expected = step != nullptr ? describe(*step) : "its end",
                                      .asked = asked};
        }
        const bool releases =
            std::find(std::begin(RELEASES), std::end(RELEASES), function) != std::end(RELEASES);
        if (releases || std::uncaught_exceptions() > 0 || m_notifier.isOwnThread()) {
            return {.result = NO_ANSWER};
        }
        throw ReplayDiffers(*m_difference);
    }

    void* own(const Bytes& bytes) {
        const std::lock_guard lock(m_mutex);
        Memory memory(new unsigned char[bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), memory.get());
        return m_memory.emplace(memory.get(), std::move(memory)).first->second.get();
    }

    mutable std::mutex m_mutex;
    const std::vector<Step> m_steps;
    std::size_t m_next = 0;
    std::optional<Difference> m_difference;
    std::map<std::string, Registration> m_registrations; ///< by the handle's name
    std::map<const void*, Memory> m_memory;
    std::vector<Memory> m_handles;
    std::map<const void*, std::string> m_handleNames;
    ReplayNotifier m_notifier;
    mrl::Clock& m_before{mrl::Clock::current()};
    mrl::ScopedClock m_scopedClock;
    ScopedExchange m_inForce;
};

Replay::Replay(Capture capture) : m_impl(std::make_unique<Impl>(std::move(capture))) {}

Replay::~Replay() = default;

Adapters Replay::adapters() {
    return m_impl->adapters();
}

std::optional<Difference> Replay::difference() const {
    return m_impl->difference();
}

} // namespace capture
