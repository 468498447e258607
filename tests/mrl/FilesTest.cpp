#include <support/TemporaryFolder.h>

#include <mrl/Files.h>

#include <gmock/gmock.h>

#ifndef _WIN32
#include <support/FullDisk.h>

#include <sys/stat.h>
#endif

namespace test {

namespace {

using mrl::FileFailure;
using mrl::FileKind;
using Reason = FileFailure::Reason;

class Files : public testing::Test {
protected:
    std::filesystem::path fileWith(const std::string& text) {
        std::filesystem::path path = m_folder.path() / "f";
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    /// The failure that `action` throws.
    static FileFailure failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const FileFailure& failure) {
            return failure;
        }
        ADD_FAILURE() << "there was no failure";
        return {};
    }
    static FileFailure readFailure(const std::filesystem::path& path) {
        return failureOf([&path] { mrl::readWholeFile(path, 8); });
    }
    static void expectRefused(const std::filesystem::path& path) {
        EXPECT_EQ(mrl::fileKind(path), FileKind::other) << path;
        EXPECT_EQ(readFailure(path).reason, Reason::notOrdinary) << path;
    }

    TemporaryFolder m_folder;
};

TEST_F(Files, AreReadByteForByte) {
    const std::string bytes("\0\r\n\x1A\xFF", 5);
    EXPECT_EQ(mrl::readWholeFile(fileWith(bytes), 5), bytes);
    EXPECT_EQ(mrl::fileKind(fileWith(bytes)), FileKind::ordinary);
    EXPECT_EQ(mrl::readWholeFile(fileWith(""), 5), "");
    const std::string large(300000, 'x');
    EXPECT_EQ(mrl::readWholeFile(fileWith(large), large.size()), large);
}

TEST_F(Files, AreWrittenByteForByteFromTheBeginning) {
    const std::string bytes("\0\r\n\x1A\xFF", 5);
    const std::filesystem::path path = fileWith("something longer");
    mrl::FileToWrite file(path);
    file.write(bytes);
    file.write(std::string(300000, 'x'));
    file.close();
    EXPECT_EQ(mrl::readWholeFile(path, 400000), bytes + std::string(300000, 'x'));
}

TEST_F(Files, AreClosedByTheirDestructor) {
    const std::filesystem::path path = m_folder.path() / "new";
    { mrl::FileToWrite(path).write("new"); }
    EXPECT_EQ(mrl::readWholeFile(path, 8), "new");
    EXPECT_TRUE(std::filesystem::remove(path));
}

TEST_F(Files, AreNotReadBeyondTheLimit) {
    EXPECT_EQ(readFailure(fileWith("123456789")).reason, Reason::tooLarge);
    EXPECT_EQ(readFailure(fileWith(std::string(300000, 'x'))).reason, Reason::tooLarge);
}

TEST_F(Files, ThatAreNotThereOrCannotBeMadeHaveTheSystemsReason) {
    const std::filesystem::path missing = m_folder.path() / "missing";
    EXPECT_EQ(mrl::fileKind(missing), FileKind::missing);
    for (const FileFailure& failure :
         {readFailure(missing), failureOf([&] { const mrl::FileToWrite file(missing / "f"); })}) {
        EXPECT_EQ(failure.reason, Reason::system);
        EXPECT_EQ(failure.error, std::errc::no_such_file_or_directory);
    }
}

TEST_F(Files, AreNotFolders) {
    EXPECT_EQ(mrl::fileKind(m_folder.path()), FileKind::directory);
    EXPECT_EQ(readFailure(m_folder.path()).reason, Reason::directory);
}

#ifdef _WIN32

TEST_F(Files, AreNotDevicesInAnyFolder) {
    for (const char* name : {"NUL", "nul", "CON", "CONIN$", "COM1", "LPT1", "AUX", "PRN",
                             "\\\\.\\COM1", "\\\\.\\C:", "\\\\.\\PhysicalDrive0", "//./NUL"}) {
        expectRefused(mrl::System::path(name));
    }
}

TEST_F(Files, AreNotPipesOrMailSlots) {
    for (const char* name :
         {"\\\\.\\pipe\\x", "\\\\?\\pipe\\x", "\\\\server\\pipe\\x", "\\\\server\\PIPE\\x",
          "//server/pipe/x", "\\\\?\\UNC\\server\\pipe\\x", "\\\\server\\mailslot\\x",
          "\\\\?\\GLOBALROOT\\Device\\Null"}) {
        expectRefused(mrl::System::path(name));
    }
    for (const char* name : {"\\\\server\\share\\pipe\\x", "\\\\server\\pipes\\x", "pipe\\x"}) {
        EXPECT_NE(mrl::fileKind(mrl::System::path(name)), FileKind::other) << name;
    }
}

TEST_F(Files, MayHaveLongVerbatimNames) {
    const std::filesystem::path path = fileWith("x");
    EXPECT_EQ(mrl::readWholeFile(L"\\\\?\\" + path.native(), 8), "x");
}

#else

TEST_F(Files, AreNotDevices) {
    expectRefused("/dev/null");
    expectRefused("/dev/zero");
    std::filesystem::create_symlink("/dev/null", m_folder.path() / "link");
    expectRefused(m_folder.path() / "link");
}

TEST_F(Files, ThatAreWrittenAreOnesOfADisk) {
    const std::filesystem::path link = m_folder.path() / "link";
    std::filesystem::create_symlink("/dev/null", link);
    EXPECT_EQ(failureOf([&link] { mrl::checkWritable(link); }).reason, Reason::notOrdinary);
    EXPECT_EQ(failureOf([&link] { const mrl::FileToWrite file(link); }).reason,
              Reason::notOrdinary);
}

TEST_F(Files, OnAFullDiskReportTheReason) {
    mrl::FileToWrite file(m_folder.path() / "new");
    const test::FullDisk disk(0);
    EXPECT_EQ(failureOf([&file] { file.write("x"); }).error, std::errc::file_too_large);
}

TEST_F(Files, AreNotPipesAndAreNotWaitedFor) {
    const std::filesystem::path pipe = m_folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    expectRefused(pipe);
}

#endif

TEST_F(Files, AreCreatedByOneAlone) {
    const std::filesystem::path file = m_folder.path() / "new";
    EXPECT_TRUE(mrl::createNew(file));
    EXPECT_FALSE(mrl::createNew(file));
    EXPECT_EQ(std::filesystem::file_size(file), 0U);
    EXPECT_FALSE(mrl::createNew(m_folder.path()));
    EXPECT_FALSE(mrl::createNew(m_folder.path() / "missing" / "new"));
}

} // namespace

} // namespace test
