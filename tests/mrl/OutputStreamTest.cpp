#include <mrl/OutputStream.h>

#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <fstream>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

using mrl::OutputStream;

class CollectedText final : public OutputStream::Receiver {
public:
    void write(std::string_view utf8) override { text += utf8; }
    std::string text;
};

// Sends the process's own stream to a file while it lives.
class StreamToFile {
public:
    StreamToFile(std::FILE* stream, const std::string& path, const char* mode = "wb")
        : m_stream(stream) {
        std::fflush(stream);
        m_before = dup(fileno(stream));
        std::FILE* const file = std::fopen(path.c_str(), mode);
        dup2(fileno(file), fileno(stream));
        std::fclose(file);
    }
    StreamToFile(const StreamToFile&) = delete;
    StreamToFile& operator=(const StreamToFile&) = delete;
    ~StreamToFile() {
        std::fflush(m_stream);
        dup2(m_before, fileno(m_stream));
        close(m_before);
    }

private:
    std::FILE* m_stream;
    int m_before;
};

TEST(OutputStream, AReceiverGetsWhatIsWrittenAsUtf8) {
    OutputStream stream(OutputStream::Target::standardOutput);
    CollectedText kept;
    stream.redirect(&kept);
    stream << "a " << std::string_view("view\0!", 6) << mrl::String(MRL_TEXT(" \u00fc\u65e5"))
           << mrl::endl;
    EXPECT_EQ(kept.text, std::string("a view\0! \xC3\xBC\xE6\x97\xA5\n", 15));
}

TEST(OutputStream, RedirectReturnsThePreviousReceiver) {
    OutputStream stream(OutputStream::Target::standardError);
    CollectedText first;
    CollectedText second;
    EXPECT_EQ(stream.redirect(&first), nullptr);
    stream << "one";
    EXPECT_EQ(stream.redirect(&second), &first);
    stream << "two";
    EXPECT_EQ(stream.redirect(nullptr), &second);
    EXPECT_EQ(first.text, "one");
    EXPECT_EQ(second.text, "two");
}

TEST(OutputStream, AReceiverIsNotATerminal) {
    OutputStream stream(OutputStream::Target::standardOutput);
    CollectedText kept;
    stream.redirect(&kept);
    EXPECT_FALSE(stream.isTerminal());
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
