#include "NetlinkSocket.h"

#include "AttributeWriter.h"

#include <netlink/genl/genl.h>
#include <netlink/socket.h>

#include <linux/genetlink.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace nativewifi::linux_radio {

namespace {

// The kernel makes the messages of a dump no longer than this, and announcements are shorter.
constexpr std::size_t BUFFER_SIZE = 65536;
// Room for announcements that come while a callback runs: a busy scan makes hundreds.
constexpr int RECEIVE_ROOM = 524288;

struct FreeMessage {
    void operator()(nl_msg* message) const { nlmsg_free(message); }
};

int lastError() {
    return errno != 0 ? errno : EIO;
}

// Waits until there is something to receive. \return errno
int awaitInput(int descriptor, mrl::Clock::Duration deadline) {
    for (;;) {
        const mrl::Clock::Duration rest = deadline - mrl::Clock::current().now();
        if (rest.count() <= 0) {
            return ETIMEDOUT;
        }
        pollfd waited{descriptor, POLLIN, 0};
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(rest);
        const int ready = poll(&waited, 1, static_cast<int>(milliseconds.count()));
        if (ready > 0) {
            return 0;
        }
        if (ready < 0 && errno != EINTR) {
            return lastError();
        }
    }
}

int send(nl_sock& socket, std::uint16_t family, std::uint32_t sequence, int flags,
         std::uint8_t command, Attributes attributes) {
    const std::unique_ptr<nl_msg, FreeMessage> message(
        nlmsg_alloc_size(NLMSG_HDRLEN + GENL_HDRLEN + attributes.size()));
    if (!message ||
        genlmsg_put(message.get(), NL_AUTO_PORT, sequence, family, 0, flags, command, 0) ==
            nullptr ||
        // libnl only reads it.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        nlmsg_append(message.get(), const_cast<std::uint8_t*>(attributes.data()), attributes.size(),
                     NLMSG_ALIGNTO) < 0) {
        return ENOMEM;
    }
    errno = 0;
    return nl_send_auto(&socket, message.get()) < 0 ? lastError() : 0;
}

// The error in a message that ends a request; 0 in one that is cut short.
int errorIn(const nlmsghdr& message) {
    int error = 0;
    if (message.nlmsg_len >= NLMSG_LENGTH(sizeof error)) {
        std::memcpy(&error, NLMSG_DATA(&message), sizeof error);
    }
    return error < 0 ? -error : 0;
}

// The attributes behind the header of generic netlink; null data when there is none.
Attributes attributesOf(nlmsghdr& message) {
    if (genlmsg_valid_hdr(&message, 0) == 0) {
        return {};
    }
    const auto* const header = static_cast<const genlmsghdr*>(nlmsg_data(&message));
    return {reinterpret_cast<const std::uint8_t*>(header) + GENL_HDRLEN,
            message.nlmsg_len - NLMSG_LENGTH(GENL_HDRLEN)};
}

template <typename Number>
Number numberOf(const nlattr* attribute) {
    Number number{};
    if (attribute != nullptr && nla_len(attribute) >= static_cast<int>(sizeof number)) {
        std::memcpy(&number, nla_data(attribute), sizeof number);
    }
    return number;
}

const nlattr* find(Attributes attributes, int type) {
    return nla_find(reinterpret_cast<const nlattr*>(attributes.data()),
                    static_cast<int>(attributes.size()), type);
}

Attributes bodyOf(const nlattr& attribute) {
    return {static_cast<const std::uint8_t*>(nla_data(&attribute)),
            static_cast<std::size_t>(nla_len(&attribute))};
}

std::map<std::string, std::uint32_t> groupsIn(const nlattr& list) {
    std::map<std::string, std::uint32_t> groups;
    int rest = nla_len(&list);
    for (const auto* group = static_cast<const nlattr*>(nla_data(&list)); nla_ok(group, rest) != 0;
         group = nla_next(group, &rest)) {
        const nlattr* const name = find(bodyOf(*group), CTRL_ATTR_MCAST_GRP_NAME);
        const nlattr* const id = find(bodyOf(*group), CTRL_ATTR_MCAST_GRP_ID);
        if (name != nullptr && id != nullptr) {
            const Attributes text = bodyOf(*name);
            groups.emplace(std::string(text.begin(), std::find(text.begin(), text.end(), 0)),
                           numberOf<std::uint32_t>(id));
        }
    }
    return groups;
}

} // namespace

void NetlinkSocket::Close::operator()(nl_sock* socket) const {
    nl_socket_free(socket);
}

int NetlinkSocket::connect() {
    if (m_socket) {
        return 0;
    }
    Owner socket(nl_socket_alloc());
    if (!socket) {
        return ENOMEM;
    }
    nl_socket_disable_auto_ack(socket.get());
    errno = 0;
    if (genl_connect(socket.get()) < 0 || nl_socket_set_nonblocking(socket.get()) < 0) {
        return lastError();
    }
    nl_socket_set_buffer_size(socket.get(), RECEIVE_ROOM, 0); // a smaller one works too
    m_buffer.resize(BUFFER_SIZE);
    AttributeWriter name;
    name.add(CTRL_ATTR_FAMILY_NAME,
             {reinterpret_cast<const std::uint8_t*>(m_family.c_str()), m_family.size() + 1});
    std::uint16_t id = 0;
    std::map<std::string, std::uint32_t> groups;
    bool orderly = false;
    const Outcome outcome = exchange(
        *socket, GENL_ID_CTRL, NLM_F_ACK, CTRL_CMD_GETFAMILY, name.bytes(),
        [&](Attributes answer) {
            id = numberOf<std::uint16_t>(find(answer, CTRL_ATTR_FAMILY_ID));
            if (const nlattr* const list = find(answer, CTRL_ATTR_MCAST_GROUPS)) {
                groups = groupsIn(*list);
            }
        },
        orderly);
    if (outcome.error != 0) {
        return outcome.error;
    }
    if (id == 0) {
        return ENOENT;
    }
    m_socket = std::move(socket);
    m_familyId = id;
    m_groups = std::move(groups);
    return 0;
}

int NetlinkSocket::join(const std::string& group) {
    if (const int error = connect()) {
        return error;
    }
    const auto known = m_groups.find(group);
    if (known == m_groups.end()) {
        return ENOENT;
    }
    errno = 0;
    return nl_socket_add_membership(m_socket.get(), static_cast<int>(known->second)) < 0
               ? lastError()
               : 0;
}

int NetlinkSocket::descriptor() const {
    return m_socket ? nl_socket_get_fd(m_socket.get()) : -1;
}

Outcome NetlinkSocket::exchange(int flags, std::uint8_t command, Attributes attributes,
                                const Transport::OnAnswer& onAnswer) {
    if (const int error = connect()) {
        return {error};
    }
    // Taken away meanwhile: an exception of `onAnswer` too leaves answers behind.
    Owner socket = std::move(m_socket);
    bool orderly = false;
    const Outcome outcome =
        exchange(*socket, m_familyId, flags, command, attributes, onAnswer, orderly);
    // Without the family the module has gone; once back, it may have another number.
    if (orderly && outcome.error != ENOENT) {
        m_socket = std::move(socket);
    }
    return outcome;
}

Outcome NetlinkSocket::exchange(nl_sock& socket, std::uint16_t family, int flags,
                                std::uint8_t command, Attributes attributes,
                                const Transport::OnAnswer& onAnswer, bool& orderly) {
    const mrl::Clock::Duration deadline = mrl::Clock::current().now() + m_limit;
    if (const int error = send(socket, family, ++m_sequence, flags, command, attributes)) {
        return {error};
    }
    Progress progress;
    while (!progress.over) {
        if (const int error = awaitInput(nl_socket_get_fd(&socket), deadline)) {
            return {error};
        }
        std::size_t length = 0;
        if (const int error = receiveInto(socket, length)) {
            if (error == EAGAIN) {
                continue;
            }
            return {error};
        }
        int rest = static_cast<int>(length);
        for (auto* message = reinterpret_cast<nlmsghdr*>(m_buffer.data());
             !progress.over && nlmsg_ok(message, rest) != 0; message = nlmsg_next(message, &rest)) {
            if (message->nlmsg_seq == m_sequence &&
                message->nlmsg_pid == nl_socket_get_local_port(&socket)) {
                read(progress, *message, family, onAnswer);
            }
        }
    }
    orderly = true;
    return progress.outcome;
}

void NetlinkSocket::read(Progress& progress, nlmsghdr& message, std::uint16_t family,
                         const Transport::OnAnswer& onAnswer) {
    if ((message.nlmsg_flags & NLM_F_DUMP_INTR) != 0) {
        progress.outcome.interrupted = true;
    }
    if (message.nlmsg_type == NLMSG_ERROR || message.nlmsg_type == NLMSG_DONE) {
        progress.outcome.error = errorIn(message);
        progress.over = true;
    } else if (message.nlmsg_type == family) {
        onAnswer(attributesOf(message));
    }
}

// One datagram of the kernel's, whole.
int NetlinkSocket::receiveInto(nl_sock& socket, std::size_t& length) {
    sockaddr_nl sender{};
    socklen_t senderSize = sizeof sender;
    const ssize_t received = recvfrom(nl_socket_get_fd(&socket), m_buffer.data(), m_buffer.size(),
                                      MSG_TRUNC, reinterpret_cast<sockaddr*>(&sender), &senderSize);
    if (received < 0) {
        return errno == EINTR ? EAGAIN : lastError();
    }
    length = sender.nl_pid == 0 ? static_cast<std::size_t>(received) : 0;
    return length > m_buffer.size() ? EMSGSIZE : 0;
}

int NetlinkSocket::receive(const std::function<void(std::uint8_t command, Attributes)>& onMessage) {
    std::size_t length = 0;
    if (const int error = receiveInto(*m_socket, length)) {
        return error == EMSGSIZE ? ENOBUFS : error;
    }
    int rest = static_cast<int>(length);
    for (auto* message = reinterpret_cast<nlmsghdr*>(m_buffer.data()); nlmsg_ok(message, rest) != 0;
         message = nlmsg_next(message, &rest)) {
        if (message->nlmsg_type == m_familyId && genlmsg_valid_hdr(message, 0) != 0) {
            const auto* const header = static_cast<const genlmsghdr*>(nlmsg_data(message));
            onMessage(header->cmd, attributesOf(*message));
        }
    }
    return 0;
}

} // namespace nativewifi::linux_radio
