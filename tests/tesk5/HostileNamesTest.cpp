// One run whose names hold every byte and every kind of deceptive character: all output stays
// well-formed, and an entry of one line stays one line.
#include "FrameworkTest.h"

#include <support/SafeText.h>

#include <mrl/LoggerStream.h>
#include <mrl/Unicode.h>

#include <nlohmann/json.hpp>

namespace test {

namespace {

using nlohmann::ordered_json;
using tesk5::TeskString;

// Names as the module makes them of an SSID's bytes, one character a byte, and as files and
// command lines spell them in UTF-8.
std::vector<std::string> hostileNames() {
    std::vector<std::string> names;
    mrl::CharString all;
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const auto unit = static_cast<mrl::Char>(byte);
        names.push_back(mrl::toUtf8(mrl::CharString(1, unit)));
        all += unit;
        if (all.size() == 32) {
            names.push_back(mrl::toUtf8(all));
            all.clear();
        }
    }
    for (std::size_t length = 0; length <= 33; ++length) {
        names.emplace_back(length, '\x1b');
        names.emplace_back(length, '<');
    }
    for (const char* name : {"\x1b]0;title\x07",
                             "\x1b[2J\x1b[H",
                             "\xC2\x9Bm",
                             "\u202Eeman",
                             "\xE2\x81\xA6x\xE2\x81\xA9",
                             "\xE2\x80\xA8line\xE2\x80\xA9",
                             "\"'&<>`",
                             "</testcase>",
                             "]]>",
                             "<!--",
                             "</bdi></td><script>alert(1)</script>",
                             "&amp;&#x41;",
                             "{Name}{{Name}}{{{Name}}}",
                             "%s%n",
                             "\\",
                             "\\u0041",
                             "\r\n",
                             "\n\n",
                             "\xFF\xFE\xC0\xAF\xED\xA0\x80",
                             "\xEF\xBF\xBE\xEF\xBF\xBF",
                             "\xF0\x9F\x93\xB6"}) {
        names.emplace_back(name);
    }
    return names;
}

class HostileNames : public FrameworkTest {
protected:
    HostileNames() {
        m_name = optionalParameter("SSID");
        m_event = DiagModule::createEvent("WEAK");
    }

    /// Runs a test that reports `names`, with a report of every kind and a log.
    int runWith(const std::vector<std::string>& names, bool events) {
        registerTest("A", [this, names](const DiagDevice&) {
            tesk5::Survey survey{"Networks", "%", 0, 100, {}};
            mrl::Logger& logger = mrl::LogFactory::createLogger("hostile");
            int line = 0;
            for (const std::string& name : names) {
                survey.entries.push_back({TeskString(name), 50, false});
                m_event->setVariable("Name", TeskString(name));
                m_event->setVariable("Unspoken", TeskString(name));
                DiagModule::warning(m_event, "a.cpp",
                                    ++line); // else names that read alike count twice
                mrl::LoggerStream(logger.admitting(1), 1) << "SSID: " << name;
            }
            DiagModule::surveyed(survey);
            return TestResult::WARN();
        })->addParameter(m_name);
        std::string all;
        for (const std::string& name : names) {
            all += TeskString(name).utf8();
        }
        registerThrowing("B", TeskException(TeskString(all)));
        const ordered_json device = {
            {"name", all}, {"capabilities", {"Wireless"}}, {"properties", {{all + ".", all}}}};
        setDevices(ordered_json::array({device}).dump());
        std::vector<std::string> arguments = {
            "run",          "--json", file("r.json"), "--junit", file("r.xml"),         "--html",
            file("r.html"), "--log",  file("r.log"),  "--set",   "SSID=" + names.back()};
        if (events) {
            arguments.emplace_back("--events");
        }
        return start(arguments);
    }
    std::string written(const char* name) const { return bytesOfFile(file(name)); }

private:
    tesk5::Parameter* m_name;
    tesk5::Event* m_event;
};

TEST_F(HostileNames, AreEscapedOnConsoleAndInLogAndReportsAndAreNoMarkup) {
    const std::vector<std::string> names = hostileNames();
    EXPECT_EQ(runWith(names, false), 5);
    EXPECT_EQ(findUnsafeInLines(output()), "");
    EXPECT_EQ(findUnsafeInLines(errors()), "");
    // Heads and verdicts of two tests, two lines an event, and the sum.
    EXPECT_EQ(linesOf(output()).size(), 5 + 2 * names.size());
    EXPECT_EQ(findUnsafeInLines(written("r.log")), "");
    EXPECT_EQ(findUnsafeInMarkup(written("r.xml")), "");
    EXPECT_EQ(findUnsafeInMarkup(written("r.html")), "");
    const std::string json = written("r.json");
    EXPECT_EQ(findUnsafeInLines(json), "");
    const ordered_json report = ordered_json::parse(json);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(report["results"][0]["surveys"][0]["entries"][i]["name"],
                  TeskString(names[i]).utf8());
    }
    const std::string junit = skeletonOf(written("r.xml"));
    const std::string html = skeletonOf(written("r.html"));
    registry().tests.clear();
    std::vector<std::string> harmless;
    harmless.reserve(names.size());
    for (const std::string& name : names) {
        harmless.emplace_back(name.empty() ? "" : "x");
    }
    runWith(harmless, false);
    EXPECT_EQ(junit, skeletonOf(written("r.xml")));
    EXPECT_EQ(html, skeletonOf(written("r.html")));
}

TEST_F(HostileNames, LeaveTheStreamOfEventsOneObjectALineAndAscii) {
    const std::vector<std::string> names = hostileNames();
    EXPECT_EQ(runWith(names, true), 5);
    const std::vector<std::string> lines = linesOf(output());
    // Beginning and end of the run and of two tests, the events, and the survey.
    EXPECT_EQ(lines.size(), 2 + 2 * 2 + names.size() + 1);
    for (const std::string& line : lines) {
        EXPECT_TRUE(ordered_json::parse(line).is_object());
        EXPECT_EQ(line.find_first_not_of(" !\"#$%&'()*+,-./0123456789:;<=>?@"
                                         "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
                                         "abcdefghijklmnopqrstuvwxyz{|}~"),
                  std::string::npos)
            << line;
    }
}

} // namespace

} // namespace test
