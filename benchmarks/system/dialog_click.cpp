// Clicks on the network list of the real dialog, with real windows and painting, and prints the
// median time to the new details as JSON. On a clock that only sleeping moves: the pauses of a
// refresh take no time, and what is left is the program's, the window system's and the simulator's.
#include "../FirstInterface.h"

#include <MRLrAntenna.h>

#include <mrlrantenna_dialog/DialogTest.h>

#include <support/VirtualClock.h>

#include <radiosim/Engine.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using std::chrono::steady_clock;
using test::Dialog;

constexpr int NETWORKS = 10;
// Neither the first row nor each other's neighbours.
constexpr int ROWS[] = {3, 7};
// What is made on first use has been made by then.
constexpr int WARM_UP = 10;
constexpr int DEFAULT_CLICKS = 400;

std::string nameOf(int row) {
    return "Network " + std::to_string(row);
}

// Ten networks, connected to the one in the middle; their signals differ, so that the meter moves.
radiosim::Scenario usualRoom() {
    radiosim::Scenario scenario;
    radiosim::Interface& card = scenario.interfaces.front();
    for (int row = 0; row < NETWORKS; ++row) {
        card.accessPoints.push_back(
            test::network(nameOf(row), static_cast<std::uint32_t>(30 + 5 * row)));
    }
    card.connection.emplace().ssid = nameOf(NETWORKS / 2);
    return scenario;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const int clicks = argumentCount > 1 ? std::atoi(arguments[1]) : DEFAULT_CLICKS;
    if (clicks < 1) {
        std::fputs("bench_dialog_click [CLICKS]: how many clicks are timed, at least 1\n", stderr);
        return 64;
    }
    const test::VirtualClock clock;
    radiosim::Engine radio(usualRoom());

    std::vector<double> milliseconds;
    bool wrong = false;
    std::vector<test::Step> steps;
    for (int i = 0; i < WARM_UP + clicks; ++i) {
        steps.emplace_back([&, i, row = ROWS[i % 2]](Dialog& dialog) {
            radio.clearCalls();
            const steady_clock::time_point clicked = steady_clock::now();
            test::choose(dialog, row);
            RedrawWindow(dialog.m_hWnd, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            GdiFlush();
            const steady_clock::duration took = steady_clock::now() - clicked;
            if (i >= WARM_UP) {
                milliseconds.push_back(std::chrono::duration<double, std::milli>(took).count());
            }
            wrong = wrong || test::shown(dialog, IDC_SSID) != nameOf(row);
        });
    }
    {
        const test::DialogDriver driver(std::move(steps), test::DialogDriver::Place::ON_SCREEN);
        DiversityTest(bench::firstInterface());
        wrong = wrong || driver.stepsLeft() != 0;
    }
    if (wrong) {
        std::fputs("bench_dialog_click: the dialog did not show what was clicked\n", stderr);
        return EXIT_FAILURE;
    }
    std::printf("{\"clicks\": %d, \"medianMs\": %.3f}\n", clicks, median(milliseconds));
    return EXIT_SUCCESS;
}
