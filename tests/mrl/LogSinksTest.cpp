#include <mrl/Exception.h>
#include <mrl/LoggerStream.h>
#include <mrl/System.h>

#include <support/CapturedStream.h>
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
using testing::AllOf;
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

struct FileLogSink : testing::Test {
    test::TemporaryFolder folder;
    test::VirtualClock clock;
    const std::string path = folder.file("log.txt");

    /// Logs `text` to the file, which is opened for it.
    void logAnew(const char* text) const {
        const Logging logging(mrl::fileLogSink(path));
        log(text);
    }
    static std::string reasonAgainst(const std::string& file) {
        try {
            mrl::fileLogSink(file);
        } catch (const mrl::Exception& failure) {
            return failure.toString().getUTF8String().bytes();
        }
        return "it opened";
    }
};

TEST_F(FileLogSink, WritesTimePriorityLoggerAndText) {
    {
        const Logging logging(mrl::fileLogSink(path));
        LoggerStream(&LogFactory::createLogger("mrlrantenna"), 1) << 245 << " text";
        clock.sleep(std::chrono::milliseconds(10877));
        LoggerStream(&LogFactory::createLogger("mrlrantenna.mrlrantennaDlg"), 4)
            << "100 % {} %v of \"M\xC3\xBCller\"";
    }
    EXPECT_EQ(bytesOfFile(path), "2026-11-20T19:55:01.123Z 1 mrlrantenna: 245 text\n"
                                 "2026-11-20T19:55:12.000Z 4 mrlrantenna.mrlrantennaDlg: "
                                 "100 % {} %v of \"M\xC3\xBCller\"\n");
}

TEST_F(FileLogSink, ALineIsInTheFileAsSoonAsItIsWritten) {
    const Logging logging(mrl::fileLogSink(path));
    log("first");
    EXPECT_THAT(bytesOfFile(path), testing::EndsWith(" first\n"));
}

TEST_F(FileLogSink, AppendsToWhatIsThereAndBeginsANewLineAfterAnIncompleteOne) {
    std::ofstream(folder.path() / "log.txt", std::ios::binary) << "2026-11-20T19:55:01.123Z 1 mrl";
    logAnew("first");
    logAnew("second");
    EXPECT_EQ(bytesOfFile(path), "2026-11-20T19:55:01.123Z 1 mrl\n"
                                 "2026-11-20T19:55:01.123Z 1 mrlrantenna: first\n"
                                 "2026-11-20T19:55:01.123Z 1 mrlrantenna: second\n");
}

#ifndef _WIN32

TEST_F(FileLogSink, BeginsANewLineWhenTheDiskHasSpaceAgain) {
    const Logging logging(mrl::fileLogSink(path));
    {
        const test::FullDisk disk(30);
        log("cut");
        log("lost");
    }
    log("whole");
    EXPECT_EQ(bytesOfFile(path), "2026-11-20T19:55:01.123Z 1 mrl\n"
                                 "2026-11-20T19:55:01.123Z 1 mrlrantenna: whole\n");
}

TEST_F(FileLogSink, OpensNoDevice) {
    EXPECT_THAT(reasonAgainst("/dev/null"), HasSubstr("no ordinary file"));
}

#endif

TEST_F(FileLogSink, ThePathMayHaveCharactersOfAnyScript) {
    const std::string name = "Pr\u00fcfung \u65e5\u672c \U0001F4F6.log";
    {
        const Logging logging(mrl::fileLogSink(folder.file(name)));
        log("here");
    }
    ASSERT_TRUE(std::filesystem::exists(folder.path() / mrl::System::path(name)));
    EXPECT_THAT(bytesOfFile(folder.file(name)), HasSubstr("mrlrantenna: here\n"));
}

TEST_F(FileLogSink, AFolderIsRefusedWithTheReason) {
    std::filesystem::create_directory(mrl::System::path(path));
    const std::string reason = reasonAgainst(path);
    EXPECT_THAT(reason, HasSubstr(path));
    EXPECT_THAT(reason, HasSubstr("it is a directory"));
}

TEST_F(FileLogSink, AMissingFolderOrTheEmptyPathIsRefusedAndNothingCreated) {
    const std::string missing = folder.file("m\u00fcssing/log.txt");
    EXPECT_THAT(reasonAgainst(missing),
                AllOf(HasSubstr("m\u00fcssing"), HasSubstr("No such file or directory")));
    EXPECT_THAT(reasonAgainst(""), HasSubstr("No such file or directory"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(StandardErrorLogSink, WritesTheSameLinesToTheErrorStream) {
    const test::VirtualClock clock;
    const test::CapturedStream errors(mrl::cerr);
    const Logging logging(mrl::standardErrorLogSink());
    log("M\xC3\xBCller\n");
    EXPECT_EQ(errors.text(), "2026-11-20T19:55:01.123Z 1 mrlrantenna: M\xC3\xBCller\\n\n");
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
