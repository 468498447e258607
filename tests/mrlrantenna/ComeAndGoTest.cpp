// The adapter, the service or the PC goes away between any two calls of the verification test: the
// test ends in time, with the result of what is left.
#include "Faults.h"
#include "VerificationRun.h"

#include <algorithm>
#include <chrono>

namespace {

using tesk5::TestResult;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* RADIO_OFF_EVENT =
    "error ERROR_NDIS_DOT11_POWER_STATE_INVALID "
    "modules/src/windows/diag/mrlrantenna/WirelessDevice.cpp:1189";
constexpr const char* NOT_FOUND_EVENT =
    "error ACCESS_POINT_NOT_FOUND modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:261 "
    "SSIDName=\"Lab\"";
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

    const std::vector<radiosim::Call>& calls() const { return m_calls; }
    std::size_t moments() const { return m_calls.size(); }

    // Runs the test; `event` happens right behind its nth call.
    TestResult verifyWith(std::size_t nth, const std::function<void()>& event) {
        m_eventsBefore = raised().size();
        startScene();
        afterCall = [nth, &event](std::size_t number, const radiosim::Call&) {
            if (number == nth) {
                event();
            }
        };
        const mrl::Clock::Duration before = clock().now();
        const TestResult result = verify();
        m_seconds = std::chrono::duration<double>(clock().now() - before).count();
        afterCall = nullptr;
        test::countCombination();
        return result;
    }

    std::vector<std::string> newEvents() const {
        std::vector<std::string> all = raisedLines();
        return {all.begin() + static_cast<std::ptrdiff_t>(m_eventsBefore), all.end()};
    }
    double seconds() const { return m_seconds; }

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
    std::size_t m_eventsBefore = 0;
    double m_seconds = 0;
};

TEST_F(ComeAndGo, AnAdapterThatIsUnpluggedCannotBeTested) {
    for (std::size_t nth = 1; nth <= moments(); ++nth) {
        SCOPED_TRACE(calls()[nth - 1].text());
        const bool matters = radioIsAskedAfter(nth);
        EXPECT_EQ(verifyWith(nth, [this] { radio().removeInterface(0); }),
                  matters ? TestResult::CANNOTRUN() : TestResult::PASS());
        EXPECT_THAT(newEvents(), IsEmpty());
        EXPECT_LE(seconds(), LONGEST_SECONDS);
        test::expectDeliberateLeaksAlone(radio(), handlesLeft());
    }
}

TEST_F(ComeAndGo, AServiceThatIsStoppedCannotBeAsked) {
    for (const DWORD code : {DWORD{ERROR_SERVICE_NOT_ACTIVE}, DWORD{1722}}) {
        for (std::size_t nth = 1; nth <= moments(); ++nth) {
            SCOPED_TRACE(calls()[nth - 1].text());
            const bool matters = radioIsAskedAfter(nth);
            EXPECT_EQ(verifyWith(nth, [&] { radio().stopService(code); }),
                      matters ? TestResult::CANNOTRUN() : TestResult::PASS());
            EXPECT_THAT(newEvents(), IsEmpty());
            EXPECT_LE(seconds(), LONGEST_SECONDS);
            test::expectDeliberateLeaksAlone(radio(), 0); // the service took its handles along
        }
    }
}

// A handle from before is invalid, and one that has worked once is never opened anew.
TEST_F(ComeAndGo, AServiceThatIsRestartedIsFoundAgainOnlyByADeviceThatIsNotReadyYet) {
    for (std::size_t nth = 1; nth <= moments(); ++nth) {
        SCOPED_TRACE(calls()[nth - 1].text());
        const bool ready = nth >= numberOf("WlanRegisterNotification", 1);
        const bool matters = ready && radioIsAskedAfter(nth);
        const TestResult result = verifyWith(nth, [this] {
            radio().stopService();
            radio().startService();
        });
        if (matters) {
            EXPECT_EQ(result, TestResult::CANNOTRUN());
        } else {
            EXPECT_EQ(result, TestResult::PASS());
        }
        EXPECT_THAT(newEvents(), IsEmpty());
        EXPECT_LE(seconds(), LONGEST_SECONDS);
    }
}

TEST_F(ComeAndGo, ARadioThatIsSwitchedOffOnTheCaseCannotBeTested) {
    for (std::size_t nth = 1; nth <= moments(); ++nth) {
        SCOPED_TRACE(calls()[nth - 1].text());
        const bool matters = radioIsAskedAfter(nth);
        EXPECT_EQ(verifyWith(nth, [this] { radio().setRadio(0, 0, {}, OFF); }),
                  matters ? TestResult::CANNOTRUN() : TestResult::PASS());
        if (listIsNextAfter(nth) || nth < numberOf("WlanGetAvailableNetworkList", 1)) {
            EXPECT_THAT(newEvents(), ElementsAre(RADIO_OFF_EVENT));
        } else {
            EXPECT_THAT(newEvents(), IsEmpty());
        }
        EXPECT_LE(seconds(), LONGEST_SECONDS);
        test::expectDeliberateLeaksAlone(radio(), handlesLeft());
    }
}

TEST_F(ComeAndGo, ARadioThatIsBackBeforeItIsAskedForIsNotMissed) {
    for (std::size_t nth = numberOf("WlanGetNetworkBssList", 2); nth <= moments(); ++nth) {
        SCOPED_TRACE(calls()[nth - 1].text());
        EXPECT_EQ(verifyWith(nth,
                             [this] {
                                 radio().setRadio(0, 0, {}, OFF);
                                 radio().setRadio(0, 0, {}, 1);
                             }),
                  TestResult::PASS());
        EXPECT_THAT(newEvents(), IsEmpty());
    }
}

// The fixed waits are measured in pauses and the search in time: a night between two calls of the
// search uses its half minute up, a night during a forced scan costs nothing.
TEST_F(ComeAndGo, APcThatIsSuspendedLosesTheSearchOnlyInAPollWithoutAMatch) {
    const std::size_t searchBegins = numberOf("WlanGetNetworkBssList", 2) + 1;
    const std::size_t matchBegins = numberOf("WlanGetAvailableNetworkList", 2);
    for (std::size_t nth = 1; nth <= moments(); ++nth) {
        SCOPED_TRACE(calls()[nth - 1].text());
        const bool lost = nth >= searchBegins && nth < matchBegins;
        EXPECT_EQ(verifyWith(nth, [this] { clock().sleep(std::chrono::hours(9)); }),
                  lost ? TestResult::FAIL() : TestResult::PASS());
        if (lost) {
            EXPECT_THAT(newEvents(), ElementsAre(NOT_FOUND_EVENT));
        } else {
            EXPECT_THAT(newEvents(), IsEmpty());
        }
        EXPECT_LE(seconds() - 9 * 3600, LONGEST_SECONDS);
        test::expectDeliberateLeaksAlone(radio(), handlesLeft());
    }
}

} // namespace
