// What stands behind the table of a capture: a recording, which passes each call on, or a replay,
// which answers it from the file.
#pragma once

#include <capture/CaptureFile.h>

#include <nativewifi/Api.h>

#include <functional>
#include <map>
#include <mutex>

namespace capture {

/// Names of what a client holds, each given once: "h1" for the first handle, "b1" for the first
/// block. Any thread.
class Holdings {
public:
    explicit Holdings(char kind) : m_kind(kind) {}

    /// The name of a thing that the client has just got.
    std::string add(const void* thing);
    /// Null for a null pointer, "?" for a thing that was never handed out.
    mrl::Json nameOf(const void* thing) const;
    /// The client has given the thing back; another one may have its address.
    void remove(const void* thing);

private:
    const char m_kind;
    mutable std::mutex m_mutex;
    std::size_t m_count = 0;
    std::map<const void*, std::string> m_names;
};

struct Registration {
    DWORD source = 0;
    WLAN_NOTIFICATION_CALLBACK callback = nullptr;
    void* context = nullptr;
};

/// One at a time. The operations may be called from any thread.
class Exchange {
public:
    /// Calls the function of the table behind and reads what it wrote.
    using Pass = std::function<Answer(const nativewifi::Api& behind)>;

    Exchange() = default;
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    virtual ~Exchange();

    virtual Answer serve(const Request& request, const Pass& pass) = 0;
    /// Whether answers come from a file, so that the table has to write them to the caller.
    virtual bool replays() const = 0;
    /// What to register with the table behind in the place of the client's registration.
    virtual Registration registering(const mrl::Json& client, const Registration& given) = 0;

    // What a replay hands out.
    virtual HANDLE handleNamed(const std::string& name) = 0;
    virtual void* blockOf(const Block& block) = 0;
    virtual mrl::Char* textOf(const std::string& utf8) = 0;
    /// The client gives back a block or a text of ours.
    virtual void release(const void* thing) = 0;

    Holdings handles{'h'};
    Holdings blocks{'b'};
};

/// The table whose functions go to the Exchange in force.
const nativewifi::Api& exchangeTable();

/// Puts an Exchange in force for its own lifetime.
class ScopedExchange {
public:
    explicit ScopedExchange(Exchange& exchange);
    ScopedExchange(const ScopedExchange&) = delete;
    ScopedExchange& operator=(const ScopedExchange&) = delete;
    ~ScopedExchange();

private:
    nativewifi::ScopedApi m_table;
};

} // namespace capture
