// The checks of what the program assumes about the Native Wifi interface, against the Linux table.
#include "LinuxRadioTest.h"

#include <contract/Contract.h>

#include <gmock/gmock.h>

#include <set>

namespace contract {
namespace {

class LinuxContract : public test::LinuxRadioTest {
protected:
    std::set<std::string> notObservable(const test::FakeInterface& interface) {
        start({interface});
        const std::atomic<bool> interrupted{false};
        std::set<std::string> ids;
        for (const Check& check : checks()) {
            const Finding finding = run(check, {.scan = true, .radio = true}, interrupted);
            EXPECT_NE(finding.verdict, Verdict::BROKEN) << check.id << finding.seen.dump();
            if (finding.verdict == Verdict::NOT_OBSERVABLE) {
                ids.insert(check.id);
            }
        }
        return ids;
    }
};

// What the kernel does not know, and what it does not refuse.
const std::set<std::string> neverObservable = {"service.stopped",
                                               "query.autoconf",
                                               "query.background-scan",
                                               "query.media-streaming",
                                               "query.infrastructure-pairs",
                                               "query.ad-hoc-pairs",
                                               "query.countries",
                                               "location.denied"};

TEST_F(LinuxContract, HoldsWithAConnection) {
    std::set<std::string> expected = neverObservable;
    expected.insert("query.not-connected");
    EXPECT_EQ(notObservable(test::connectedInterface()), expected);
    EXPECT_EQ(service().openHandles(), 1U);
}

TEST_F(LinuxContract, HoldsWithoutAConnection) {
    test::FakeInterface interface = test::connectedInterface();
    interface.connection.reset();
    interface.ssid.clear();
    std::set<std::string> expected = neverObservable;
    expected.insert({"query.connection", "query.channel", "query.rssi"});
    EXPECT_EQ(notObservable(interface), expected);
}

} // namespace
} // namespace contract
