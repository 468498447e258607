#include "NetlinkKernel.h"

#include "CallError.h"

#include <fcntl.h>
#include <linux/netlink.h>
#include <linux/nl80211.h>
#include <linux/rfkill.h>
#include <net/if.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>

namespace nativewifi::linux_radio {

namespace {

constexpr std::chrono::seconds ANSWER_LIMIT{3};

} // namespace

Outcome NetlinkTransport::request(std::uint8_t command, Attributes attributes,
                                  const OnAnswer& onAnswer) {
    return m_socket.exchange(NLM_F_ACK, command, attributes, onAnswer);
}

Outcome NetlinkTransport::dump(std::uint8_t command, Attributes attributes,
                               const OnAnswer& onAnswer) {
    return m_socket.exchange(NLM_F_DUMP, command, attributes, onAnswer);
}

void NetlinkAnnouncements::Descriptor::close() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
    m_descriptor = -1;
}

NetlinkAnnouncements::NetlinkAnnouncements(std::string family, const std::filesystem::path& rfkill,
                                           mrl::Clock::Duration limit)
    : m_socket(std::move(family), limit),
      m_rfkill(::open(rfkill.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
      m_stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

NetlinkAnnouncements::~NetlinkAnnouncements() = default;

int NetlinkAnnouncements::open(std::initializer_list<const char*> groups) {
    if (m_stop.get() < 0) {
        return errno;
    }
    for (const char* const group : groups) {
        if (const int error = m_socket.join(group)) {
            return error;
        }
    }
    return 0;
}

bool NetlinkAnnouncements::wait(Receiver& receiver) {
    // A negative descriptor is not waited for.
    pollfd waited[] = {
        {m_stop.get(), POLLIN, 0}, {m_socket.descriptor(), POLLIN, 0}, {m_rfkill.get(), POLLIN, 0}};
    while (poll(waited, std::size(waited), -1) < 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    if (waited[0].revents != 0) {
        return false;
    }
    if (waited[2].revents != 0) {
        drainSwitches(receiver);
    }
    return waited[1].revents == 0 || receive(receiver);
}

bool NetlinkAnnouncements::receive(Receiver& receiver) {
    const int error = m_socket.receive([&receiver](std::uint8_t command, Attributes attributes) {
        receiver.onMessage(command, attributes);
    });
    if (error == ENOBUFS) {
        receiver.onLoss();
    }
    return error == 0 || error == EAGAIN || error == ENOBUFS;
}

// Which one was switched does not matter: the receiver looks at the radios that it knows.
void NetlinkAnnouncements::drainSwitches(Receiver& receiver) {
    rfkill_event event{};
    ssize_t size = 0;
    do {
        size = read(m_rfkill.get(), &event, sizeof event);
    } while (size > 0 || (size < 0 && errno == EINTR));
    if (size == 0 || errno != EAGAIN) {
        m_rfkill.close(); // it would end each wait at once
    }
    receiver.onSwitch();
}

void NetlinkAnnouncements::stop() {
    const std::uint64_t one = 1;
    // Fails only when it is readable already.
    static_cast<void>(write(m_stop.get(), &one, sizeof one) < 0);
}

std::unique_ptr<Transport> NetlinkKernel::connect() {
    auto transport = std::make_unique<NetlinkTransport>(NL80211_GENL_NAME, ANSWER_LIMIT);
    check(transport->connect());
    return transport;
}

std::unique_ptr<Announcements> NetlinkKernel::listen() {
    auto announcements = std::make_unique<NetlinkAnnouncements>(
        NL80211_GENL_NAME, m_root / "dev/rfkill", ANSWER_LIMIT);
    check(announcements->open({NL80211_MULTICAST_GROUP_CONFIG, NL80211_MULTICAST_GROUP_SCAN,
                               NL80211_MULTICAST_GROUP_MLME}));
    return announcements;
}

std::uint64_t NetlinkKernel::bootTimeNs() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U +
           static_cast<std::uint64_t>(now.tv_nsec);
}

int NetlinkKernel::bringUp(const std::string& interface) {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        return errno;
    }
    ifreq request{};
    interface.copy(request.ifr_name, IFNAMSIZ - 1);
    int error = 0;
    if (ioctl(socket, SIOCGIFFLAGS, &request) < 0) {
        error = errno;
    } else {
        request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
        error = ioctl(socket, SIOCSIFFLAGS, &request) < 0 ? errno : 0;
    }
    close(socket);
    return error;
}

} // namespace nativewifi::linux_radio
