// The running kernel behind Transport.h: nl80211 by generic netlink, rfkill by its device.
#pragma once

#include "NetlinkSocket.h"
#include "Transport.h"

namespace nativewifi::linux_radio {

class NetlinkTransport final : public Transport {
public:
    NetlinkTransport(std::string family, mrl::Clock::Duration limit)
        : m_socket(std::move(family), limit) {}

    int connect() { return m_socket.connect(); }
    Outcome request(std::uint8_t command, Attributes attributes, const OnAnswer& onAnswer) override;
    Outcome dump(std::uint8_t command, Attributes attributes, const OnAnswer& onAnswer) override;

private:
    NetlinkSocket m_socket;
};

class NetlinkAnnouncements final : public Announcements {
public:
    /// \param rfkill the path of its device; without it switches are not announced
    NetlinkAnnouncements(std::string family, const std::filesystem::path& rfkill,
                         mrl::Clock::Duration limit);
    ~NetlinkAnnouncements() override;

    /// \return errno
    int open(std::initializer_list<const char*> groups);

    bool wait(Receiver& receiver) override;
    void stop() override;

private:
    class Descriptor {
    public:
        explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        ~Descriptor() { close(); }
        int get() const { return m_descriptor; }
        void close();

    private:
        int m_descriptor;
    };

    bool receive(Receiver& receiver);
    void drainSwitches(Receiver& receiver);

    NetlinkSocket m_socket;
    Descriptor m_rfkill;
    Descriptor m_stop; ///< readable once stop() has been called
};

class NetlinkKernel final : public Kernel {
public:
    std::unique_ptr<Transport> connect() override;
    std::unique_ptr<Announcements> listen() override;
    std::uint64_t bootTimeNs() override;
    int bringUp(const std::string& interface) override;
    const std::filesystem::path& root() const override { return m_root; }

private:
    const std::filesystem::path m_root = "/";
};

} // namespace nativewifi::linux_radio
