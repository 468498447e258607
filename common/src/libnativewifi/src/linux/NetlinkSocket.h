// A generic netlink socket: one request at a time, and multicast messages.
//
// libnl connects, composes and sends. Messages are received here and not by libnl: its receiving
// functions wait without limit, and pass C++ callbacks through C code.
#pragma once

#include "Transport.h"

#include <mrl/Clock.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

struct nl_sock;
struct nlmsghdr;

namespace nativewifi::linux_radio {

class NetlinkSocket {
public:
    /// \param family such as "nl80211"
    /// \param limit for the answer to a request
    NetlinkSocket(std::string family, mrl::Clock::Duration limit)
        : m_family(std::move(family)), m_limit(limit) {}

    /// Connects unless it is connected, and asks for the family.
    /// \return errno; ENOENT when the kernel does not have it
    int connect();
    /// Receives the messages of a multicast group of the family from now on. \return errno
    int join(const std::string& group);

    /// Sends a command of the family, connected before if need be, and passes on the attributes of
    /// each answer. Messages that belong to another request are skipped. After a failure that
    /// leaves answers behind the connection ends, and the next request makes a new one.
    /// \param flags NLM_F_ACK or NLM_F_DUMP
    Outcome exchange(int flags, std::uint8_t command, Attributes attributes,
                     const Transport::OnAnswer& onAnswer);

    /// Passes on what has arrived of the groups, without waiting.
    /// \return errno: ENOBUFS after a loss, EAGAIN when nothing is there
    int receive(const std::function<void(std::uint8_t command, Attributes)>& onMessage);

    /// For poll(); -1 while it is not connected.
    int descriptor() const;

private:
    struct Close {
        void operator()(nl_sock* socket) const;
    };
    using Owner = std::unique_ptr<nl_sock, Close>;
    /// `over`: the last message of the exchange was among those received.
    struct Progress {
        Outcome outcome;
        bool over = false;
    };

    Outcome exchange(nl_sock& socket, std::uint16_t family, int flags, std::uint8_t command,
                     Attributes attributes, const Transport::OnAnswer& onAnswer, bool& orderly);
    int receiveInto(nl_sock& socket, std::size_t& length);
    void read(Progress& progress, nlmsghdr& message, std::uint16_t family,
              const Transport::OnAnswer& onAnswer);

    const std::string m_family;
    const mrl::Clock::Duration m_limit;
    Owner m_socket;
    std::uint16_t m_familyId = 0;
    std::map<std::string, std::uint32_t> m_groups;
    std::uint32_t m_sequence = 0;
    std::vector<std::uint8_t> m_buffer;
};

} // namespace nativewifi::linux_radio
