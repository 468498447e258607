// What the client needs of the system: one small interface that tests fill with recorded bytes.
#pragma once

#include "Messages.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace nativewifi::linux_radio {

/// How a request ended.
struct Outcome {
    int error = 0;            ///< errno; ETIMEDOUT when the kernel did not answer in time
    bool interrupted = false; ///< a dump: what was listed changed meanwhile, entries may be missing
};

/// One connection to nl80211. One thread at a time.
class Transport {
public:
    /// Receives the attributes of one message. They are valid during the call.
    using OnAnswer = std::function<void(Attributes)>;

    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default;

    /// Sends `command` (NL80211_CMD_...) and waits for its end, a bounded time.
    /// \param attributes of the request, each as netlink lays it out
    virtual Outcome request(std::uint8_t command, Attributes attributes,
                            const OnAnswer& onAnswer) = 0;
    /// The same for a list: one message or more for each entry.
    virtual Outcome dump(std::uint8_t command, Attributes attributes, const OnAnswer& onAnswer) = 0;
};

/// What the kernel announces by itself: nl80211's multicast messages, and switched radios.
class Announcements {
public:
    class Receiver {
    public:
        Receiver() = default;
        Receiver(const Receiver&) = delete;
        Receiver& operator=(const Receiver&) = delete;
        virtual ~Receiver() = default;

        virtual void onMessage(std::uint8_t command, Attributes attributes) = 0;
        /// The state of some radio's switch may have changed.
        virtual void onSwitch() = 0;
        /// Messages were lost: more came than there was room for.
        virtual void onLoss() = 0;
    };

    Announcements() = default;
    Announcements(const Announcements&) = delete;
    Announcements& operator=(const Announcements&) = delete;
    virtual ~Announcements() = default;

    /// Blocks until something is announced, and passes it on.
    /// \return false after stop(), or when nothing can come any more
    virtual bool wait(Receiver& receiver) = 0;
    /// Ends wait(), now and from now on. Any thread.
    virtual void stop() = 0;
};

/// The running system. Any thread.
class Kernel {
public:
    Kernel() = default;
    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;
    virtual ~Kernel() = default;

    /// Failure: throws CallError
    virtual std::unique_ptr<Transport> connect() = 0;
    /// What is announced from now on.
    /// Failure: throws CallError
    virtual std::unique_ptr<Announcements> listen() = 0;
    /// Now, on CLOCK_BOOTTIME, by which the kernel dates what it heard.
    virtual std::uint64_t bootTimeNs() = 0;
    /// Sets the network interface up. \return errno
    virtual int bringUp(const std::string& interface) = 0;
    /// The folder that has sys, dev and run: "/".
    virtual const std::filesystem::path& root() const = 0;
};

} // namespace nativewifi::linux_radio
