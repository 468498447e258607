#include "Room.h"

#include "../FirstInterface.h"

#include <mrl/Logger.h>

#include <array>
#include <string>

namespace bench {

namespace {

// Usual network names, short and long.
constexpr std::array BEGINNINGS = {"Lab",       "Meeting Room", "Guest",     "Production Line",
                                   "Warehouse", "Cafe",         "Reception", "Home Network 5 GHz"};

radiosim::Scenario scenario(std::size_t networks) {
    radiosim::Scenario room;
    std::vector<radiosim::AccessPoint>& points = room.interfaces.front().accessPoints;
    points.reserve(networks);
    for (std::size_t i = 0; i < networks; ++i) {
        // Four digits after a blank: no name is part of another.
        const std::string number = std::to_string(10000 + i).substr(1);
        points.push_back({.ssid = std::string(BEGINNINGS[i % BEGINNINGS.size()]) + " " + number,
                          .signal = static_cast<std::uint32_t>(1 + i % 99),
                          .secured = i % 4 != 0});
    }
    return room;
}

} // namespace

void StillClock::waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                           Duration /*deadline*/) {
    condition.wait(lock);
}

Room::Room(std::size_t networks) : m_radio(scenario(networks)), m_device(firstInterface()) {
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
}

} // namespace bench
