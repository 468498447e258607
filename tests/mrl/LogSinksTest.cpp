#include <mrl/Exception.h>
#include <mrl/LoggerStream.h>
#include <mrl/OutputStream.h>
#include <mrl/System.h>

#ifndef _WIN32
#include <support/FullDisk.h>
#endif
#include <support/TemporaryFolder.h>
#include <support/VirtualClock.h>

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

using mrl::LogFactory;
using mrl::LoggerStream;
using test::bytesOfFile;
using test::TemporaryFolder;
using testing::HasSubstr;

// While it lives, log lines are written to `sink`.
class Logging {
public:
    explicit Logging(std::shared_ptr<mrl::LogSink> sink) {
        LogFactory::setSink(std::move(sink));
        LogFactory::setPriority(0);
    }
    Logging(const Logging&) = delete;
    Logging& operator=(const Logging&) = delete;
    ~Logging() {
        LogFactory::setPriority(LogFactory::OFF);
        LogFactory::setSink(nullptr);
    }
};

void log(const char* text, int priority = 1) {
    LoggerStream(&LogFactory::createLogger("mrlrantenna"), priority) << text;
}

std::string reasonOf(const std::string& path) {
    try {
        mrl::fileLogSink(path);
    } catch (const mrl::Exception& failure) {
        return failure.toString().getUTF8String().bytes();
    }
    return "it opened";
}

TEST(FileLogSink, WritesTimePriorityLoggerAndText) {
    const TemporaryFolder folder;
    test::VirtualClock clock;
    {
        const Logging logging(mrl::fileLogSink(folder.file("log.txt")));
        LoggerStream(&LogFactory::createLogger("mrlrantenna"), 1) << 245 << " text";
        clock.sleep(std::chrono::milliseconds(10877));
        LoggerStream(&LogFactory::createLogger("mrlrantenna.mrlrantennaDlg"), 4)
            << "100 % {} %v of \"M\xC3\xBCller\"";
    }
    EXPECT_EQ(bytesOfFile(folder.file("log.txt")),
              "2026-11-20T19:55:01.123Z 1 mrlrantenna: 245 text\n"
              "2026-11-20T19:55:12.000Z 4 mrlrantenna.mrlrantennaDlg: "
              "100 % {} %v of \"M\xC3\xBCller\"\n");
}

TEST(FileLogSink, ALineIsInTheFileAsSoonAsItIsWritten) {
    const TemporaryFolder folder;
    const test::VirtualClock clock;
    const Logging logging(mrl::fileLogSink(folder.file("log.txt")));
    log("first");
    EXPECT_THAT(bytesOfFile(folder.file("log.txt")), testing::EndsWith(" first\n"));
}

TEST(FileLogSink, AppendsToWhatIsThere) {
    const TemporaryFolder folder;
    const test::VirtualClock clock;
    for (const char* text : {"first", "second"}) {
        const Logging logging(mrl::fileLogSink(folder.file("log.txt")));
        log(text);
    }
    EXPECT_EQ(bytesOfFile(folder.file("log.txt")),
              "2026-11-20T19:55:01.123Z 1 mrlrantenna: first\n"
              "2026-11-20T19:55:01.123Z 1 mrlrantenna: second\n");
}

TEST(FileLogSink, BeginsANewLineAfterAnIncompleteOne) {
    const TemporaryFolder folder;
    const test::VirtualClock clock;
    std::ofstream(folder.path() / "log.txt", std::ios::binary) << "2026-11-20T19:55:01.123Z 1 mrl";
    for (const char* text : {"first", "second"}) {
        const Logging logging(mrl::fileLogSink(folder.file("log.txt")));
        log(text);
    }
    EXPECT_EQ(bytesOfFile(folder.file("log.txt")),
              "2026-11-20T19:55:01.123Z 1 mrl\n"
              "2026-11-20T19:55:01.123Z 1 mrlrantenna: first\n"
              "2026-11-20T19:55:01.123Z 1 mrlrantenna: second\n");
}

#ifndef _WIN32

TEST(FileLogSink, BeginsANewLineWhenTheDiskHasSpaceAgain) {
    const TemporaryFolder folder;
    const test::VirtualClock clock;
    const Logging logging(mrl::fileLogSink(folder.file("log.txt")));
    {
        const test::FullDisk disk(30);
        log("cut");
        log("lost");
    }
    log("whole");
    EXPECT_EQ(bytesOfFile(folder.file("log.txt")),
              "2026-11-20T19:55:01.123Z 1 mrl\n"
              "2026-11-20T19:55:01.123Z 1 mrlrantenna: whole\n");
}

TEST(FileLogSink, OpensNoDevice) {
    EXPECT_THAT(reasonOf("/dev/null"), HasSubstr("no ordinary file"));
}

#endif

TEST(FileLogSink, ThePathMayHaveCharactersOfAnyScript) {
    const TemporaryFolder folder;
    const std::string name = "Pr\xC3\xBC"
                             "fung \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x93\xB6.log";
    {
        const Logging logging(mrl::fileLogSink(folder.file(name)));
        log("here");
    }
    ASSERT_TRUE(std::filesystem::exists(folder.path() / mrl::System::path(name)));
    EXPECT_THAT(bytesOfFile(folder.file(name)), HasSubstr("mrlrantenna: here\n"));
}

TEST(FileLogSink, AFolderIsRefusedWithTheReason) {
    const TemporaryFolder folder;
    const std::string path = folder.file("folder");
    std::filesystem::create_directory(mrl::System::path(path));
    const std::string reason = reasonOf(path);
    EXPECT_THAT(reason, HasSubstr(path));
    EXPECT_THAT(reason,
                testing::AnyOf(HasSubstr("Is a directory"), HasSubstr("Permission denied")));
}

TEST(FileLogSink, AMissingFolderIsRefusedAndNotCreated) {
    const TemporaryFolder folder;
    const std::string reason = reasonOf(folder.file("m\xC3\xBC"
                                                    "ssing/log.txt"));
    EXPECT_THAT(reason, HasSubstr("m\xC3\xBC"
                                  "ssing"));
    EXPECT_THAT(reason, HasSubstr("No such file or directory"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(FileLogSink, TheEmptyPathIsRefused) {
    EXPECT_THAT(reasonOf(""), HasSubstr("No such file or directory"));
}

TEST(StandardErrorLogSink, WritesTheSameLinesToTheErrorStream) {
    class Kept final : public mrl::OutputStream::Receiver {
    public:
        void write(std::string_view utf8) override { pieces.emplace_back(utf8); }
        std::vector<std::string> pieces;
    };
    const test::VirtualClock clock;
    Kept kept;
    auto* const before = mrl::cerr.redirect(&kept);
    {
        const Logging logging(mrl::standardErrorLogSink());
        log("M\xC3\xBCller\n");
    }
    mrl::cerr.redirect(before);
    EXPECT_THAT(kept.pieces,
                testing::ElementsAre("2026-11-20T19:55:01.123Z 1 mrlrantenna: M\xC3\xBCller\\n\n"));
}

// Constructed before Basekit is used, so destroyed after everything that is constructed later.
struct LogsWhenDestroyed {
    ~LogsWhenDestroyed() {
        if (armed) {
            log("logged at the end");
        }
    }
    bool armed = false;
} g_logsWhenDestroyed;

TEST(LogAtTheEndDeathTest, StaticObjectsLogFromTheirDestructors) {
    EXPECT_EXIT(
        {
            LogFactory::setSink(mrl::standardErrorLogSink());
            LogFactory::setPriority(0);
            log("logged before");
            g_logsWhenDestroyed.armed = true;
            std::exit(0);
        },
        testing::ExitedWithCode(0), "logged at the end");
}

} // namespace
