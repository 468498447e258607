// The adapter, the service or the PC goes away between any two calls of the verification test: the
// test ends in time, with the result of what is left.
#include "Faults.h"
#include "VerificationRun.h"

#include <algorithm>
#include <chrono>

namespace {

using tesk5::TestResult;
using testing::ElementsAreArray;

constexpr const char* RADIO_OFF_EVENT =
    "error ERROR_NDIS_DOT11_POWER_STATE_INVALID "
    "modules/src/windows/diag/mrlrantenna/WirelessDevice.cpp:1189";
constexpr const char* NOT_FOUND_EVENT =
    "error ACCESS_POINT_NOT_FOUND modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:261 "
    "SSIDName=\"Lab\"";
constexpr std::int32_t ON = 1;
constexpr std::int32_t OFF = 2;
// Two forced scans and a poll that comes again.
constexpr double LONGEST_SECONDS = 14.3;

bool isLook(const radiosim::Call& call) {
    return call.function == "WlanGetAvailableNetworkList";
}
bool isRadioQuery(const radiosim::Call& call) {
    return call.function == "WlanQueryInterface" &&
           call.arguments.find("\"opcode\":4,") != std::string::npos;
}

class ComeAndGo : public test::VerificationRun {
protected:
    // The calls of a run in which nothing happens; their number is that of the moments.
    ComeAndGo() {
        startScene();
        EXPECT_EQ(verify(), TestResult::PASS());
        m_calls = radio().calls();
    }

    // Runs the test once for each moment; `event` happens right behind its nth call, and `expected`
    // is the result and the events of that run.
    struct Outcome {
        TestResult result;
        std::vector<std::string> events = {};
    };
    void expectAtEachMoment(const std::function<void()>& event,
                            const std::function<Outcome(std::size_t nth)>& expected,
                            const std::function<std::size_t()>& handles = nullptr) {
        for (std::size_t nth = 1; nth <= m_calls.size(); ++nth) {
            SCOPED_TRACE(m_calls[nth - 1].text());
            const std::size_t eventsBefore = raised().size();
            startScene();
            mrl::Clock::Duration begin = clock().now();
            afterCall = [&](std::size_t number, const radiosim::Call&) {
                if (number == nth) {
                    const mrl::Clock::Duration before = clock().now();
                    event();
                    begin += clock().now() - before; // a night is not the run's
                }
            };
            const Outcome outcome = expected(nth);
            EXPECT_EQ(verify(), outcome.result);
            const std::chrono::duration<double> took = clock().now() - begin;
            EXPECT_LE(took.count(), LONGEST_SECONDS);
            const std::vector<std::string> events = raisedLines();
            EXPECT_THAT(
                std::vector<std::string>(events.begin() + static_cast<std::ptrdiff_t>(eventsBefore),
                                         events.end()),
                ElementsAreArray(outcome.events));
            afterCall = nullptr;
            test::expectDeliberateLeaksAlone(radio(), handles ? handles() : handlesLeft());
            test::countCombination();
        }
    }
    static Outcome cannotRunIf(bool matters) {
        return {matters ? TestResult::CANNOTRUN() : TestResult::PASS()};
    }

    // Whether the radio is still to be asked about after the nth call: what has gone by then is
    // taken for a radio that is off.
    bool radioIsAskedAfter(std::size_t nth) const {
        return std::any_of(after(nth), m_calls.end(), isRadioQuery);
    }
    // Whether the list is looked at before that.
    bool listIsNextAfter(std::size_t nth) const {
        const auto next = std::find_if(after(nth), m_calls.end(), [](const radiosim::Call& call) {
            return isLook(call) || isRadioQuery(call);
        });
        return next != m_calls.end() && isLook(*next);
    }
    // The number of the last call of this function, or of its nth.
    std::size_t numberOf(const char* function, std::size_t nth) const {
        for (std::size_t i = 0; i < m_calls.size(); ++i) {
            if (m_calls[i].function == function && --nth == 0) {
                return i + 1;
            }
        }
        return 0;
    }

private:
    std::vector<radiosim::Call>::const_iterator after(std::size_t nth) const {
        return m_calls.begin() + static_cast<std::ptrdiff_t>(nth);
    }

    std::vector<radiosim::Call> m_calls;
};

TEST_F(ComeAndGo, AnAdapterThatIsUnpluggedCannotBeTested) {
    expectAtEachMoment([this] { radio().removeInterface(0); },
                       [this](std::size_t nth) { return cannotRunIf(radioIsAskedAfter(nth)); });
}

TEST_F(ComeAndGo, AServiceThatIsStoppedCannotBeAsked) {
    for (const DWORD code : {DWORD{ERROR_SERVICE_NOT_ACTIVE}, DWORD{1722}}) {
        expectAtEachMoment([this, code] { radio().stopService(code); },
                           [this](std::size_t nth) { return cannotRunIf(radioIsAskedAfter(nth)); },
                           [] { return 0U; }); // it took its handles along
    }
}

// A handle from before is invalid, and one that has worked once is never opened anew.
TEST_F(ComeAndGo, AServiceThatIsRestartedIsFoundAgainOnlyByADeviceThatIsNotReadyYet) {
    expectAtEachMoment(
        [this] {
            radio().stopService();
            radio().startService();
        },
        [this](std::size_t nth) {
            return cannotRunIf(nth >= numberOf("WlanRegisterNotification", 1) &&
                               radioIsAskedAfter(nth));
        },
        [this] { return radio().openHandles(); });
}

TEST_F(ComeAndGo, ARadioThatIsSwitchedOffOnTheCaseCannotBeTested) {
    expectAtEachMoment([this] { radio().setRadio(0, 0, {}, OFF); },
                       [this](std::size_t nth) {
                           Outcome outcome = cannotRunIf(radioIsAskedAfter(nth));
                           if (listIsNextAfter(nth) ||
                               nth < numberOf("WlanGetAvailableNetworkList", 1)) {
                               outcome.events = {RADIO_OFF_EVENT};
                           }
                           return outcome;
                       });
}

TEST_F(ComeAndGo, ARadioThatIsBackBeforeItIsAskedForIsNotMissed) {
    expectAtEachMoment(
        [this] {
            radio().setRadio(0, 0, {}, OFF);
            radio().setRadio(0, 0, {}, ON);
        },
        [](std::size_t) { return Outcome{TestResult::PASS()}; });
}

// The fixed waits are measured in pauses and the search in time: a night between two calls of the
// search uses its half minute up, a night during a forced scan costs nothing.
TEST_F(ComeAndGo, APcThatIsSuspendedLosesTheSearchOnlyInAPollWithoutAMatch) {
    const std::size_t searchBegins = numberOf("WlanGetNetworkBssList", 2) + 1;
    const std::size_t matchBegins = numberOf("WlanGetAvailableNetworkList", 2);
    expectAtEachMoment([this] { clock().sleep(std::chrono::hours(9)); },
                       [&](std::size_t nth) {
                           return nth >= searchBegins && nth < matchBegins
                                      ? Outcome{TestResult::FAIL(), {NOT_FOUND_EVENT}}
                                      : Outcome{TestResult::PASS()};
                       });
}

} // namespace
