#include "FakeKernel.h"

#include <CallError.h>

#include <fcntl.h>
#include <linux/rfkill.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace test {

namespace fs = std::filesystem;
using namespace netlink;
using nativewifi::linux_radio::Announcements;
using nativewifi::linux_radio::Transport;

namespace {

void write(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::uint32_t interfaceIn(const Bytes& attributes) {
    std::uint32_t index = 0;
    if (const auto body = attributeIn(attributes, NL80211_ATTR_IFINDEX)) {
        std::memcpy(&index, body->data(), sizeof index);
    }
    return index;
}

Bytes interfaceMessage(const FakeInterface& interface) {
    Parts parts = {
        u32(NL80211_ATTR_IFINDEX, interface.index),
        text(NL80211_ATTR_IFNAME, interface.name),
        u32(NL80211_ATTR_WIPHY, interface.wiphy),
        u32(NL80211_ATTR_IFTYPE, interface.type),
        attribute(NL80211_ATTR_MAC, {interface.address.begin(), interface.address.end()}),
        u32(NL80211_ATTR_GENERATION, 7)};
    if (!interface.ssid.empty()) {
        parts.push_back(attribute(NL80211_ATTR_SSID, bytesOf(interface.ssid)));
    }
    if (interface.frequencyMhz) {
        parts.push_back(u32(NL80211_ATTR_WIPHY_FREQ, *interface.frequencyMhz));
    }
    return join(parts);
}

Bytes wiphyMessage(const FakeInterface& interface) {
    Parts parts = {u32(NL80211_ATTR_WIPHY, interface.wiphy)};
    if (interface.antennas) {
        parts.push_back(u32(NL80211_ATTR_WIPHY_ANTENNA_RX, *interface.antennas));
    }
    if (interface.availableAntennas) {
        parts.push_back(u32(NL80211_ATTR_WIPHY_ANTENNA_AVAIL_RX, *interface.availableAntennas));
    }
    return join(parts);
}

Bytes stationMessage(const FakeInterface& interface) {
    return join({u32(NL80211_ATTR_IFINDEX, interface.index),
                 attribute(NL80211_ATTR_MAC, {2, 0, 0, 0, 0, 1}),
                 nested(NL80211_ATTR_STA_INFO, *interface.connection)});
}

} // namespace

std::optional<Bytes> attributeIn(const Bytes& attributes, unsigned type) {
    for (std::size_t place = 0; place + sizeof(nlattr) <= attributes.size();) {
        nlattr head{};
        std::memcpy(&head, attributes.data() + place, sizeof head);
        if ((head.nla_type & NLA_TYPE_MASK) == type) {
            const auto first = attributes.begin() + static_cast<std::ptrdiff_t>(place);
            return Bytes(first + sizeof head, first + head.nla_len);
        }
        place += std::max<std::size_t>(NLA_ALIGN(head.nla_len), sizeof head);
    }
    return std::nullopt;
}

class FakeKernel::FakeTransport final : public Transport {
public:
    explicit FakeTransport(FakeKernel& kernel) : m_kernel(kernel) {}
    ~FakeTransport() override {
        const std::lock_guard lock(m_kernel.m_mutex);
        --m_kernel.m_open;
    }
    Outcome request(std::uint8_t command, Attributes attributes,
                    const OnAnswer& onAnswer) override {
        return m_kernel.answer(command, attributes, onAnswer, false);
    }
    Outcome dump(std::uint8_t command, Attributes attributes, const OnAnswer& onAnswer) override {
        return m_kernel.answer(command, attributes, onAnswer, true);
    }

private:
    FakeKernel& m_kernel;
};

class FakeKernel::FakeAnnouncements final : public Announcements {
public:
    FakeAnnouncements(FakeKernel& kernel, std::shared_ptr<Listener> listener)
        : m_kernel(kernel), m_listener(std::move(listener)) {}
    ~FakeAnnouncements() override {
        const std::lock_guard lock(m_kernel.m_mutex);
        --m_kernel.m_open;
        std::erase(m_kernel.m_listeners, m_listener);
        m_kernel.m_changed.notify_all();
    }
    bool wait(Receiver& receiver) override {
        Announced announced;
        {
            std::unique_lock lock(m_kernel.m_mutex);
            ++m_kernel.m_waits;
            m_listener->waiting = true;
            m_kernel.m_changed.notify_all();
            m_kernel.m_changed.wait(
                lock, [this] { return m_listener->stopped || !m_listener->pending.empty(); });
            m_listener->waiting = false;
            if (m_listener->stopped) {
                return false;
            }
            announced = std::move(m_listener->pending.front());
            m_listener->pending.pop_front();
        }
        switch (announced.kind) {
        case Announced::Kind::MESSAGE:
            receiver.onMessage(announced.command, announced.attributes);
            return true;
        case Announced::Kind::SWITCH:
            receiver.onSwitch();
            return true;
        case Announced::Kind::LOSS:
            receiver.onLoss();
            return true;
        case Announced::Kind::BREAK:
            return false;
        }
        return false;
    }
    void stop() override {
        const std::lock_guard lock(m_kernel.m_mutex);
        m_listener->stopped = true;
        m_kernel.m_changed.notify_all();
    }

private:
    FakeKernel& m_kernel;
    std::shared_ptr<Listener> m_listener;
};

FakeKernel::FakeKernel() {
    const fs::path device = root() / "dev/rfkill";
    fs::create_directories(device.parent_path());
    if (mkfifo(device.c_str(), 0600) != 0) {
        throw std::runtime_error("no named pipe");
    }
    // For writing too: a pipe without writers wakes its reader again and again.
    m_rfkill = open(device.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    m_watcher = std::thread([this] { watchRfkill(); });
}

FakeKernel::~FakeKernel() {
    {
        const std::lock_guard lock(m_mutex);
        m_over = true;
    }
    static_cast<void>(::write(m_rfkill, "", 1));
    m_watcher.join();
    close(m_rfkill);
}

// A switch is noticed without a request, as by the kernel.
void FakeKernel::watchRfkill() {
    pollfd waited{m_rfkill, POLLIN, 0};
    while (poll(&waited, 1, -1) > 0) {
        const std::lock_guard lock(m_mutex);
        if (m_over) {
            return;
        }
        obeyRfkill();
    }
}

fs::path FakeKernel::interfaceFolder(const std::string& name) const {
    return root() / "sys/class/net" / name;
}

fs::path FakeKernel::radioFolder(const FakeInterface& interface) const {
    return root() / "sys/class/ieee80211" / ("phy" + std::to_string(interface.wiphy));
}

FakeInterface* FakeKernel::find(std::uint32_t index) {
    const auto found =
        std::find_if(m_interfaces.begin(), m_interfaces.end(),
                     [index](const FakeInterface& each) { return each.index == index; });
    return found == m_interfaces.end() ? nullptr : &*found;
}

void FakeKernel::add(FakeInterface interface) {
    const std::lock_guard lock(m_mutex);
    const fs::path radio = radioFolder(interface);
    write(radio / "macaddress", interface.permanentAddress + "\n");
    if (interface.rfkill) {
        const fs::path rfkill = radio / ("rfkill" + std::to_string(*interface.rfkill));
        write(rfkill / "soft", "0\n");
        write(rfkill / "hard", "0\n");
    }
    const fs::path folder = interfaceFolder(interface.name);
    write(folder / "flags", "0x1003\n");
    fs::create_directory_symlink(radio, folder / "phy80211");
    m_interfaces.push_back(std::move(interface));
}

void FakeKernel::remove(std::uint32_t index) {
    const std::lock_guard lock(m_mutex);
    if (const FakeInterface* const interface = find(index)) {
        fs::remove_all(interfaceFolder(interface->name));
    }
    std::erase_if(m_interfaces, [index](const FakeInterface& each) { return each.index == index; });
}

void FakeKernel::change(std::uint32_t index, const std::function<void(FakeInterface&)>& how) {
    const std::lock_guard lock(m_mutex);
    how(*find(index));
}

void FakeKernel::setSwitch(std::uint32_t index, const char* kind, bool blocked) {
    const std::lock_guard lock(m_mutex);
    const FakeInterface& interface = *find(index);
    write(radioFolder(interface) / ("rfkill" + std::to_string(interface.rfkill.value())) / kind,
          blocked ? "1\n" : "0\n");
}

void FakeKernel::setUp(const std::string& interface, bool up) {
    write(interfaceFolder(interface) / "flags", up ? "0x1003\n" : "0x1002\n");
}

void FakeKernel::pass(std::chrono::milliseconds time) {
    m_bootTimeNs += static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
}

bool FakeKernel::isUp(const std::string& interface) const {
    return bytesOfFile((interfaceFolder(interface) / "flags").string()) == "0x1003\n";
}

void FakeKernel::fail(std::uint8_t command, int error, int times) {
    const std::lock_guard lock(m_mutex);
    m_failures[command].insert(m_failures[command].end(), static_cast<std::size_t>(times), error);
}

void FakeKernel::interrupt(std::uint8_t command, int times) {
    const std::lock_guard lock(m_mutex);
    m_interruptions[command] = times;
}

void FakeKernel::refuseConnections(int error) {
    const std::lock_guard lock(m_mutex);
    m_refusal = error;
}

void FakeKernel::refuseToBringUp(int error) {
    const std::lock_guard lock(m_mutex);
    m_bringUpError = error;
}

void FakeKernel::onRequest(std::function<void(std::uint8_t command)> hook) {
    const std::lock_guard lock(m_mutex);
    m_hook = std::move(hook);
}

std::vector<FakeRequest> FakeKernel::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::size_t FakeKernel::requestCount(std::uint8_t command) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_requests.begin(), m_requests.end(),
                      [command](const FakeRequest& each) { return each.command == command; }));
}

std::size_t FakeKernel::waits() const {
    const std::lock_guard lock(m_mutex);
    return m_waits;
}

std::string FakeKernel::writtenToRfkill() {
    const std::lock_guard lock(m_mutex);
    obeyRfkill();
    return std::exchange(m_writtenToRfkill, {});
}

std::size_t FakeKernel::openConnections() const {
    const std::lock_guard lock(m_mutex);
    return m_open;
}

void FakeKernel::announceLocked(const Announced& announced) {
    for (const std::shared_ptr<Listener>& listener : m_listeners) {
        listener->pending.push_back(announced);
    }
    m_changed.notify_all();
}

void FakeKernel::announce(std::uint8_t command, const Parts& attributes) {
    const std::lock_guard lock(m_mutex);
    announceLocked({.command = command, .attributes = join(attributes)});
}

void FakeKernel::announceSwitch() {
    const std::lock_guard lock(m_mutex);
    announceLocked({.kind = Announced::Kind::SWITCH});
}

void FakeKernel::announceLoss() {
    const std::lock_guard lock(m_mutex);
    announceLocked({.kind = Announced::Kind::LOSS});
}

void FakeKernel::breakListeners() {
    const std::lock_guard lock(m_mutex);
    announceLocked({.kind = Announced::Kind::BREAK});
}

void FakeKernel::endScansAtOnce(bool atOnce) {
    const std::lock_guard lock(m_mutex);
    m_scansEndAtOnce = atOnce;
}

void FakeKernel::settle() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] {
        return std::all_of(m_listeners.begin(), m_listeners.end(), [](const auto& listener) {
            return listener->pending.empty() && listener->waiting;
        });
    });
}

std::unique_ptr<Transport> FakeKernel::connect() {
    const std::lock_guard lock(m_mutex);
    nativewifi::linux_radio::check(m_refusal);
    ++m_open;
    return std::make_unique<FakeTransport>(*this);
}

std::unique_ptr<Announcements> FakeKernel::listen() {
    const std::lock_guard lock(m_mutex);
    nativewifi::linux_radio::check(m_refusal);
    ++m_open;
    m_listeners.push_back(std::make_shared<Listener>());
    return std::make_unique<FakeAnnouncements>(*this, m_listeners.back());
}

int FakeKernel::bringUp(const std::string& interface) {
    const std::lock_guard lock(m_mutex);
    if (m_bringUpError == 0) {
        setUp(interface, true);
    }
    return m_bringUpError;
}

// Does what was written to the device. Requests look too: the kernel does it before the write
// returns.
void FakeKernel::obeyRfkill() {
    bool any = false;
    rfkill_event event{};
    while (read(m_rfkill, &event, sizeof event) == static_cast<ssize_t>(sizeof event)) {
        any = true;
        m_writtenToRfkill.append(reinterpret_cast<const char*>(&event), sizeof event);
        for (FakeInterface& interface : m_interfaces) {
            if (event.op == RFKILL_OP_CHANGE && interface.rfkill == event.idx) {
                write(radioFolder(interface) / ("rfkill" + std::to_string(event.idx)) / "soft",
                      event.soft != 0 ? "1\n" : "0\n");
                if (event.soft != 0) {
                    setUp(interface.name, false);
                }
            }
        }
    }
    if (any) {
        announceLocked({.kind = Announced::Kind::SWITCH});
    }
}

std::vector<Bytes> FakeKernel::answersTo(std::uint8_t command, std::uint32_t index, bool dump,
                                         int& error) {
    std::vector<Bytes> answers;
    if (command == NL80211_CMD_GET_INTERFACE && dump) {
        for (const FakeInterface& each : m_interfaces) {
            answers.push_back(interfaceMessage(each));
        }
        return answers;
    }
    const FakeInterface* const interface = find(index);
    if (interface == nullptr) {
        error = ENODEV;
        return answers;
    }
    switch (command) {
    case NL80211_CMD_GET_INTERFACE:
        answers.push_back(interfaceMessage(*interface));
        break;
    case NL80211_CMD_GET_WIPHY:
        answers.push_back(wiphyMessage(*interface));
        break;
    case NL80211_CMD_GET_SCAN:
        for (const HeardBss& heard : interface->heard) {
            answers.push_back(bssMessage(heard, index));
        }
        break;
    case NL80211_CMD_GET_STATION:
        if (interface->connection && isUp(interface->name)) {
            answers.push_back(stationMessage(*interface));
        }
        break;
    case NL80211_CMD_TRIGGER_SCAN:
        error = isUp(interface->name) ? 0 : ENETDOWN;
        if (error == 0 && m_scansEndAtOnce) {
            announceLocked({.command = NL80211_CMD_NEW_SCAN_RESULTS,
                            .attributes = join({u32(NL80211_ATTR_WIPHY, interface->wiphy),
                                                u32(NL80211_ATTR_IFINDEX, index)})});
        }
        break;
    default:
        error = EOPNOTSUPP;
        break;
    }
    return answers;
}

FakeKernel::Outcome FakeKernel::answer(std::uint8_t command, Attributes attributes,
                                       const Transport::OnAnswer& onAnswer, bool dump) {
    std::function<void(std::uint8_t)> hook;
    {
        const std::lock_guard lock(m_mutex);
        hook = m_hook;
    }
    if (hook) {
        hook(command);
    }
    Outcome outcome;
    std::vector<Bytes> answers;
    {
        const std::lock_guard lock(m_mutex);
        obeyRfkill();
        const Bytes request(attributes.begin(), attributes.end());
        m_requests.push_back({command, request});
        std::deque<int>& failures = m_failures[command];
        if (!failures.empty()) {
            outcome.error = failures.front();
            failures.pop_front();
            return outcome;
        }
        answers = answersTo(command, interfaceIn(request), dump, outcome.error);
        if (int& interruptions = m_interruptions[command]; dump && interruptions > 0) {
            --interruptions;
            outcome.interrupted = true;
            if (!answers.empty()) {
                answers.pop_back(); // the one that is missing
            }
        }
    }
    for (const Bytes& each : answers) {
        onAnswer(each);
    }
    return outcome;
}

} // namespace test
