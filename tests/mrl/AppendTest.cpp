// Files that several processes extend. Locks belong to an open file on every system, so threads
// exclude each other as processes do.
#include <support/TemporaryFolder.h>
#include <support/VirtualClock.h>

#include <mrl/Files.h>

#include <gmock/gmock.h>

#include <sstream>
#include <thread>

#ifdef _WIN32
#include <windows.h>
#else
#include <support/FullDisk.h>

#include <mrl/System.h>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace test {

namespace {

constexpr unsigned LONGEST = 60'000;

class Append : public testing::Test {
protected:
    std::filesystem::path path() const { return m_folder.path() / "journal"; }
    std::string bytes() const { return bytesOfFile(m_folder.file("journal")); }
    void write(const std::string& text) const { std::ofstream(path(), std::ios::binary) << text; }
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        std::istringstream stream(bytes());
        for (std::string line; std::getline(stream, line);) {
            all.push_back(line);
        }
        return all;
    }

    /// Why a line cannot be appended at once.
    static mrl::FileFailure failureAt(const std::filesystem::path& where) {
        try {
            mrl::appendLine(where, "line", 0);
        } catch (const mrl::FileFailure& failure) {
            return failure;
        }
        ADD_FAILURE() << "the line was appended";
        return {};
    }

    TemporaryFolder m_folder;
};

TEST_F(Append, MakesTheFileAndAddsEachLineBehindTheLast) {
    mrl::appendLine(path(), "one", LONGEST);
    mrl::appendLine(path(), "two", LONGEST);
    EXPECT_EQ(bytes(), "one\ntwo\n");
}

TEST_F(Append, EndsALineThatWasCutSoThatTheNextIsWhole) {
    write("one\n{\"hal");
    mrl::appendLine(path(), "two", LONGEST);
    EXPECT_EQ(bytes(), "one\n{\"hal\ntwo\n");
}

TEST_F(Append, KeepsTheLinesOfSeveralWritersWhole) {
    constexpr int WRITERS = 8;
    constexpr int LINES = 50;
    std::vector<std::thread> writers;
    writers.reserve(WRITERS);
    for (int writer = 0; writer < WRITERS; ++writer) {
        writers.emplace_back([this, writer] {
            // Longer than a page, so that a write without the lock could be seen in two parts.
            const std::string line(9000, static_cast<char>('a' + writer));
            for (int i = 0; i < LINES; ++i) {
                mrl::appendLine(path(), line, LONGEST);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    const std::vector<std::string> all = lines();
    EXPECT_EQ(all.size(), WRITERS * LINES);
    for (const std::string& line : all) {
        EXPECT_EQ(line, std::string(9000, line.front()));
    }
}

TEST_F(Append, RefusesWhatIsNoFileAndLeavesIt) {
    const mrl::FileFailure folder = failureAt(m_folder.path());
    EXPECT_TRUE(folder.reason == mrl::FileFailure::Reason::directory ||
                folder.error == std::errc::is_a_directory);
    EXPECT_THROW(mrl::checkAppendable(m_folder.path(), 0), mrl::FileFailure);
    EXPECT_EQ(failureAt(m_folder.path() / "missing" / "journal").error,
              std::errc::no_such_file_or_directory);
}

TEST_F(Append, ChecksAFileWithoutMakingOrChangingIt) {
    EXPECT_NO_THROW(mrl::checkAppendable(path(), 0));
    EXPECT_FALSE(std::filesystem::exists(path()));
    write("cut");
    EXPECT_NO_THROW(mrl::checkAppendable(path(), 0));
    EXPECT_EQ(bytes(), "cut");
}

TEST_F(Append, IsReadPieceByPieceWhileItGrows) {
    mrl::appendLine(path(), "one", LONGEST);
    mrl::FileToRead file(path());
    char piece[3];
    EXPECT_EQ(file.read(piece, sizeof piece), 3U);
    EXPECT_EQ(std::string(piece, 3), "one");
    mrl::appendLine(path(), "", LONGEST);
    EXPECT_EQ(file.read(piece, sizeof piece), 2U);
    EXPECT_EQ(file.read(piece, sizeof piece), 0U);
}

#ifdef _WIN32

TEST_F(Append, WaitsForALockNoLongerThanItIsAllowedTo) {
    VirtualClock clock;
    write("one\n");
    const HANDLE holder =
        CreateFileW(path().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(LockFile(holder, 0, 0x7FFFFFFF, 1, 0), 0);
    EXPECT_EQ(failureAt(path()).error, std::errc::device_or_resource_busy);
    EXPECT_THAT(clock.sleeps(), testing::IsEmpty());
    EXPECT_THROW(mrl::appendLine(path(), "two", 100), mrl::FileFailure);
    EXPECT_THAT(clock.sleeps(), testing::AllOf(testing::SizeIs(5), testing::Each(20)));
    EXPECT_THROW(mrl::checkAppendable(path(), 0), mrl::FileFailure);
    EXPECT_EQ(bytes(), "one\n") << "the lock keeps no reader away";
    CloseHandle(holder);
    mrl::appendLine(path(), "two", 0);
    EXPECT_EQ(bytes(), "one\ntwo\n");
}

#else

TEST_F(Append, WaitsForALockNoLongerThanItIsAllowedTo) {
    VirtualClock clock;
    write("one\n");
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const int file = open(path().c_str(), O_RDWR);
        struct flock range = {};
        range.l_type = F_WRLCK;
        range.l_whence = SEEK_SET;
        range.l_start = 0x7FFFFFFF00000000;
        range.l_len = 1;
        const bool held = fcntl(file, F_OFD_SETLK, &range) == 0;
        const char answer = held ? 'y' : 'n';
        _exit(::write(ready[1], &answer, 1) == 1 && pause() != 0 ? 0 : 1);
    }
    char answer = 'n';
    ASSERT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    EXPECT_EQ(failureAt(path()).error, std::errc::device_or_resource_busy);
    EXPECT_THAT(clock.sleeps(), testing::IsEmpty());
    EXPECT_THROW(mrl::appendLine(path(), "two", 100), mrl::FileFailure);
    EXPECT_THAT(clock.sleeps(), testing::AllOf(testing::SizeIs(5), testing::Each(20)));
    EXPECT_THROW(mrl::checkAppendable(path(), 0), mrl::FileFailure);
    EXPECT_EQ(bytes(), "one\n");
    // The lock of a process that is killed goes with it.
    kill(holder, SIGKILL);
    EXPECT_EQ(waitpid(holder, nullptr, 0), holder);
    mrl::appendLine(path(), "two", 0);
    EXPECT_EQ(bytes(), "one\ntwo\n");
    close(ready[0]);
    close(ready[1]);
}

TEST_F(Append, OnAFullDiskFailsAndTheNextLineIsWholeAgain) {
    write("one\n");
    {
        const FullDisk full(6);
        EXPECT_TRUE(failureAt(path()).error);
    }
    mrl::appendLine(path(), "two", 0);
    EXPECT_EQ(bytes(), "one\nli\ntwo\n");
}

#endif

} // namespace

} // namespace test
