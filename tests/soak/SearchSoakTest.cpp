// Many polls and forced scans: the memory that remains is, to the byte, what the module keeps on
// purpose.
#include "HeapAccount.h"
#include "Soak.h"

#include <mrlrantenna/DeviceTest.h>
#include <mrlrantenna/Faults.h>

#include <MRLrAntenna.h>

namespace {

using test::HeapUse;
using test::heapUse;
using test::Owner;

constexpr long USUAL_POLLS = 1000;
constexpr long USUAL_SCANS = 200;
// Half a minute of polls, ten a second, and the last one.
constexpr long POLLS_OF_A_SEARCH = 301;

class SearchSoak : public test::ModuleTest {
protected:
    // One network that the tests ask for, one with a reason not to connect, one with neither.
    SearchSoak() {
        startRadio({{.ssid = "Lab", .signal = 70U},
                    {.ssid = "Attic", .signal = 30U, .connectable = false, .reason = 0x28002},
                    {.ssid = "Cellar", .signal = 100U}});
    }

    /// Discards what the test doubles have recorded in a round.
    void forget() {
        radio().clearCalls();
        log().clear();
        clock().forgetSleeps();
    }
};

TEST_F(SearchSoak, PollsLeaveTheAnswersToTheirRadioQueriesAndNothingElse) {
    const long polls = test::soakLength("SOAK_POLLS", USUAL_POLLS);
    const test::SeparateAccounts accounts;
    const tesk5::DiagDevice card = device();
    HeapUse module;
    long done = 0;
    long searches = 0;
    for (; done < polls; done += POLLS_OF_A_SEARCH, ++searches) {
        {
            const tesk5::TestRecorder events;
            unsigned int strength = 0;
            bool radioOn = true;
            EXPECT_FALSE(getAccessPointSignalStrength(card, "Nowhere", strength, radioOn));
            EXPECT_TRUE(radioOn);
        }
        EXPECT_EQ(radio().callCount("WlanGetAvailableNetworkList"), POLLS_OF_A_SEARCH);
        forget();
        if (searches == 1) {
            module = heapUse(Owner::MODULE); // everything that is made on first use exists
        }
    }
    ASSERT_GT(searches, 2);
    EXPECT_EQ(heapUse(Owner::MODULE), module);
    test::expectDeliberateLeaksAlone(radio(), static_cast<std::size_t>(2 * searches));
    const radiosim::Leaks answers = radio().leaksOf("WlanQueryInterface");
    test::report(std::to_string(done) + " polls in " + std::to_string(searches) +
                 " searches: the module's heap grew by " +
                 std::to_string(heapUse(Owner::MODULE).bytes - module.bytes) + " bytes; kept are " +
                 std::to_string(answers.blocks) + " answers of " + std::to_string(answers.bytes) +
                 " bytes");
}

TEST_F(SearchSoak, ForcedScansLeaveAHandleAndTwoListsEachAndNothingElse) {
    const long scans = test::soakLength("SOAK_SCANS", USUAL_SCANS);
    const test::SeparateAccounts accounts;
    WirelessDevice subject(device());
    HeapUse module;
    for (long i = 0; i < scans; ++i) {
        mrl::Uint32 strength = 0;
        EXPECT_TRUE(subject.forceScanMatched("Lab", strength));
        forget();
        if (i == 1) {
            module = heapUse(Owner::MODULE);
        }
    }
    EXPECT_EQ(heapUse(Owner::MODULE), module);
    test::expectDeliberateLeaksAlone(radio(), static_cast<std::size_t>(scans) + 1);
    const auto count = static_cast<std::size_t>(scans);
    EXPECT_EQ(radio().leaksOf("WlanEnumInterfaces"),
              (radiosim::Leaks{.blocks = count, .bytes = count * (8 + 532)}));
    EXPECT_EQ(radio().leaksOf("WlanGetNetworkBssList").blocks, count);
    test::report(std::to_string(scans) + " forced scans: the module's heap grew by " +
                 std::to_string(heapUse(Owner::MODULE).bytes - module.bytes) + " bytes; kept are " +
                 std::to_string(radio().leaks().handles - 1) + " handles and " +
                 std::to_string(radio().leaks().bytes) + " bytes of lists");
}

} // namespace
