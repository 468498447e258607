// The journal has what all test doubles note, in one order.
#include "DeviceTest.h"

#include <mrl/LoggerStream.h>

namespace {

using test::Journal;
using testing::ElementsAre;

class JournalOfATest : public test::ModuleTest {
protected:
    void doOneOfEach() {
        mrl::LoggerStream(&mrl::LogFactory::createLogger("module"), 1, 245) << "text";
        mrl::Clock::current().sleep(std::chrono::milliseconds(100));
        nativewifi::api().WlanFreeMemory(nullptr);
        tesk5::TestRecorder::record(tesk5::RaisedEvent{.key = "WEAK",
                                                       .severity = tesk5::Severity::error,
                                                       .text = {},
                                                       .variables = {},
                                                       .file = {},
                                                       .line = 1,
                                                       .time = {}});
    }
};

TEST_F(JournalOfATest, HasLinesPausesCallsAndEventsInTheirOrder) {
    Journal journal;
    doOneOfEach();
    EXPECT_THAT(journal.entries(), ElementsAre("log 1 module: 245 text", "pause 100 ms",
                                               "call WlanFreeMemory = 0", "event error WEAK"));
    EXPECT_THAT(journal.entries({"call", "log"}),
                ElementsAre("log 1 module: 245 text", "call WlanFreeMemory = 0"));
    journal.clear();
    EXPECT_THAT(journal.entries(), testing::IsEmpty());
}

TEST_F(JournalOfATest, BeginsWithItsConstruction) {
    doOneOfEach();
    const Journal journal;
    EXPECT_THAT(journal.entries(), testing::IsEmpty());
}

TEST_F(JournalOfATest, IsTheOnlyOne) {
    const Journal journal;
    EXPECT_THROW(Journal(), std::logic_error);
    doOneOfEach();
    EXPECT_EQ(journal.entries().size(), 4U);
}

} // namespace
