#include <support/CapturedStream.h>
#include <support/StreamToFile.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <fstream>

namespace {

using mrl::OutputStream;
using test::StreamToFile;

TEST(OutputStream, AReceiverIsNoTerminalAndGetsWhatIsWrittenAsUtf8) {
    OutputStream stream(OutputStream::Target::standardOutput);
    const test::CapturedStream kept(stream);
    stream << "a " << std::string_view("view\0!", 6) << mrl::String(MRL_TEXT(" \u00fc\u65e5"))
           << mrl::endl;
    EXPECT_EQ(kept.text(), std::string("a view\0! \xC3\xBC\xE6\x97\xA5\n", 15));
    EXPECT_FALSE(stream.isTerminal());
}

TEST(OutputStream, RedirectReturnsThePreviousReceiver) {
    OutputStream stream(OutputStream::Target::standardError);
    test::CapturedStream first(stream);
    {
        test::CapturedStream second(stream);
        stream << "two";
        EXPECT_EQ(second.text(), "two");
        EXPECT_EQ(stream.redirect(&first), &second);
    }
    stream << "one";
    EXPECT_EQ(first.text(), "one");
    EXPECT_EQ(stream.redirect(nullptr), &first);
    EXPECT_EQ(stream.redirect(nullptr), nullptr);
}

TEST(OutputStream, RemembersThatAPieceWasLost) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("out.txt");
    OutputStream stream(OutputStream::Target::standardOutput);
    const auto lostOneThrough = [&](const char* mode) {
        const StreamToFile redirected(stdout, path, mode);
        stream << "text" << mrl::endl;
        return stream.hasLost();
    };
    EXPECT_FALSE(lostOneThrough("wb"));
    EXPECT_TRUE(lostOneThrough("rb")) << "it cannot be written";
    EXPECT_TRUE(lostOneThrough("wb")) << "what is lost stays lost";
}

struct ProcessStream {
    const char* name;
    OutputStream* stream;
    std::FILE* file;
};

class ProcessStreams : public testing::TestWithParam<ProcessStream> {};

TEST_P(ProcessStreams, AFileGetsTheBytesAndIsNotATerminal) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("out.txt");
    {
        const StreamToFile redirected(GetParam().file, path);
        EXPECT_FALSE(GetParam().stream->isTerminal());
        *GetParam().stream << "first\nM\xC3\xBCller" << mrl::endl;
        EXPECT_EQ(test::bytesOfFile(path), "first\nM\xC3\xBCller\n") << "endl flushes";
        *GetParam().stream << "last";
        GetParam().stream->flush();
    }
    EXPECT_EQ(test::bytesOfFile(path), "first\nM\xC3\xBCller\nlast");
}

TEST_P(ProcessStreams, TextAfterALossBeginsANewLine) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("out.txt");
    std::ofstream(path) << "untouched";
    {
        const StreamToFile readOnly(GetParam().file, path, "rb");
        *GetParam().stream << "lost" << mrl::endl << "lost too" << mrl::endl;
    }
    EXPECT_EQ(test::bytesOfFile(path), "untouched");
    {
        const StreamToFile writable(GetParam().file, path);
        *GetParam().stream << "next" << mrl::endl << "last" << mrl::endl;
    }
    EXPECT_EQ(test::bytesOfFile(path), "\nnext\nlast\n");
}

INSTANTIATE_TEST_SUITE_P(Both, ProcessStreams,
                         testing::Values(ProcessStream{"Output", &mrl::cout, stdout},
                                         ProcessStream{"Error", &mrl::cerr, stderr}),
                         [](const auto& row) { return row.param.name; });

} // namespace
