#include <capture/Recording.h>

#include "Exchange.h"
#include "NameHider.h"

#include <mrl/Clock.h>
#include <mrl/Files.h>

#include <algorithm>
#include <deque>
#include <thread>

namespace capture {

namespace {

using std::chrono::duration_cast;

// Registrations outlive their recording: the service may call back until the handle is closed.
struct Forwarded {
    std::string client;
    Registration to;
};

std::mutex g_noteMutex;
// Notes a notification in the recording that lives; empty while none does.
std::function<void(Notification)> g_note;

void CALLBACK forward(WLAN_NOTIFICATION_DATA* data, void* context) {
    const auto& registered = *static_cast<const Forwarded*>(context);
    {
        const std::lock_guard lock(g_noteMutex);
        if (g_note) {
            const auto* const bytes = static_cast<const unsigned char*>(data->pData);
            const std::size_t size =
                bytes == nullptr ? 0 : std::min<std::size_t>(data->dwDataSize, LARGEST_BLOCK);
            g_note({.client = registered.client,
                    .source = data->NotificationSource,
                    .code = data->NotificationCode,
                    .interfaceGuid = data->InterfaceGuid,
                    .data = Bytes(bytes, bytes + size)});
        }
    }
    registered.to.callback(data, registered.to.context);
}

} // namespace

// The clock for the thread of the captured run: it stands still between calls and sleeps.
class Recording::Impl final : public Exchange, private mrl::Clock {
public:
    Impl(const std::filesystem::path& path, mrl::Json run, bool hideNames)
        : m_file(path), m_behind(nativewifi::api()), m_clock(mrl::Clock::current()),
          m_begin(m_clock.now()),
          m_started(std::chrono::floor<std::chrono::milliseconds>(m_clock.utcNow())),
          m_owner(std::this_thread::get_id()) {
        if (hideNames) {
            m_hider.emplace();
            m_hider->hideRun(run);
        }
        m_threads.push_back(m_owner);
        m_file.write(headerLine(m_started, hideNames, run) + "\n");
        m_scopedClock.emplace(static_cast<mrl::Clock&>(*this));
        m_inForce.emplace(*this);
        const std::lock_guard lock(g_noteMutex);
        g_note = [this](Notification notification) { note(std::move(notification)); };
    }
    ~Impl() override {
        const std::lock_guard lock(g_noteMutex);
        g_note = nullptr;
    }

    // --- Exchange ---

    Answer serve(const Request& request, const Pass& pass) override {
        const Moment begin = moment();
        Answer answer = pass(m_behind);
        const Moment end = std::max(begin, elapsed());
        write({.at = begin, .what = Call{request, answer, end - begin}});
        standAt(end);
        return answer;
    }
    bool replays() const override { return false; }
    Registration registering(const mrl::Json& client, const Registration& given) override {
        if (given.callback == nullptr) {
            return given;
        }
        static auto* const all =
            new std::deque<Forwarded>; // NOLINT(cppcoreguidelines-owning-memory)
        const std::lock_guard lock(m_mutex);
        all->push_back({client.is_string() ? client.get<std::string>() : std::string(), given});
        return {given.source, &forward, &all->back()};
    }
    HANDLE handleNamed(const std::string& /*name*/) override { return nullptr; }
    void* blockOf(const Block& /*block*/) override { return nullptr; }
    mrl::Char* textOf(const std::string& /*utf8*/) override { return nullptr; }
    void release(const void* /*thing*/) override {}

    // --- the recording's own ---

    void note(Notification notification) {
        write({.at = elapsed(), .what = std::move(notification)});
    }
    void note(const Adapters& list) { write({.at = moment(), .what = list}); }
    void end(int exitValue) { write({.at = moment(), .what = End{exitValue}}); }
    bool complete() const {
        const std::lock_guard lock(m_mutex);
        return !m_failed;
    }

private:
    // --- mrl::Clock ---

    Duration now() override { return m_begin + moment(); }
    UtcTime utcNow() override { return m_started + duration_cast<UtcTime::duration>(moment()); }
    std::chrono::minutes utcOffset(UtcTime time) override { return m_clock.utcOffset(time); }
    void sleep(Duration duration) override {
        m_clock.sleep(duration);
        if (std::this_thread::get_id() == m_owner) {
            m_moment += duration_cast<Moment>(duration);
        }
    }
    void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                   Duration deadline) override {
        m_clock.waitUntil(lock, condition, deadline);
    }

    Moment elapsed() const { return duration_cast<Moment>(m_clock.now() - m_begin); }
    // Now, for the calling thread.
    Moment moment() const { return std::this_thread::get_id() == m_owner ? m_moment : elapsed(); }
    void standAt(Moment moment) {
        if (std::this_thread::get_id() == m_owner) {
            m_moment = moment;
        }
    }

    void write(Step step) {
        const std::lock_guard lock(m_mutex);
        const std::thread::id thread = std::this_thread::get_id();
        auto known = std::find(m_threads.begin(), m_threads.end(), thread);
        if (known == m_threads.end()) {
            known = m_threads.insert(known, thread);
        }
        step.thread = static_cast<std::uint32_t>(known - m_threads.begin()) + 1;
        if (m_hider) {
            m_hider->hide(step);
        }
        if (m_failed) {
            return;
        }
        try {
            m_file.write(stepLine(step) + "\n");
        } catch (const mrl::FileFailure&) {
            m_failed = true;
        }
    }

    mrl::FileToWrite m_file;
    const nativewifi::Api& m_behind;
    mrl::Clock& m_clock;
    const Duration m_begin;
    const UtcTime m_started;
    const std::thread::id m_owner;
    Moment m_moment{0}; ///< of the owner's thread
    mutable std::mutex m_mutex;
    bool m_failed = false;
    std::optional<NameHider> m_hider;
    std::vector<std::thread::id> m_threads;
    std::optional<mrl::ScopedClock> m_scopedClock;
    std::optional<ScopedExchange> m_inForce;
};

Recording::Recording(const std::filesystem::path& file, mrl::Json run, bool hideNames)
    : m_impl(std::make_unique<Impl>(file, std::move(run), hideNames)) {}

Recording::~Recording() = default;

void Recording::adapters(const Adapters& list) {
    m_impl->note(list);
}

void Recording::end(int exitValue) {
    m_impl->end(exitValue);
}

bool Recording::complete() const {
    return m_impl->complete();
}

} // namespace capture
