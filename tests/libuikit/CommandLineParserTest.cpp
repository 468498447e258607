#include <libUikit/CommandLineParser.h>

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

Texts textsOf(libUikit::CommandLineParser& parser) {
    const char** const argv = parser.argv();
    EXPECT_EQ(argv[parser.argc()], nullptr);
    return {argv, argv + parser.argc()};
}

struct ClosedHandle {
    ClosedHandle() = default;
    ClosedHandle(const ClosedHandle&) = delete;
    ClosedHandle& operator=(const ClosedHandle&) = delete;
    ~ClosedHandle() { close(); }
    void close() {
        if (handle != nullptr) {
            CloseHandle(handle);
        }
        handle = nullptr;
    }
    HANDLE handle = nullptr;
};

std::string readAll(HANDLE pipe) {
    std::string bytes;
    char part[512];
    DWORD count = 0;
    // ERROR_BROKEN_PIPE when the writer has ended
    while (ReadFile(pipe, part, sizeof part, &count, nullptr) != 0 && count > 0) {
        bytes.append(part, count);
    }
    return bytes;
}

// The arguments that a program started with `arguments` sees.
Texts seenBy(const std::wstring& arguments) {
    std::wstring self(32768, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
    const std::filesystem::path folder = std::filesystem::path(self).parent_path().parent_path();
    std::wstring commandLine =
        L"\"" + (folder / L"helpers" / UIKIT_ARGUMENTS_PROBE).wstring() + L"\" " + arguments;

    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    ClosedHandle reading;
    ClosedHandle writing;
    CreatePipe(&reading.handle, &writing.handle, &inherited, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writing.handle;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &startup, &process) == 0) {
        ADD_FAILURE() << "the probe does not start: " << GetLastError();
        return {};
    }
    writing.close();
    const std::string bytes = readAll(reading.handle);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(process.hProcess, &code);
    EXPECT_EQ(code, 0U) << "argv does not end with a null pointer";
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);

    Texts texts;
    for (std::size_t at = 0; at < bytes.size(); at += texts.back().size() + 1) {
        texts.emplace_back(bytes.c_str() + at);
    }
    return texts;
}

TEST(CommandLineParser, BeginsWithTheModulesNameAlone) {
    libUikit::CommandLineParser parser(mrl::String("mrlrantenna.k5x"));
    EXPECT_EQ(parser.argc(), 1);
    EXPECT_EQ(textsOf(parser), Texts{"mrlrantenna.k5x"});
}

TEST(CommandLineParser, GivesTheModulesNameInUtf8) {
    libUikit::CommandLineParser parser(mrl::String(L"Messger\u00e4t"));
    EXPECT_EQ(textsOf(parser), Texts{"Messger\xc3\xa4t"});
}

TEST(CommandLineParser, GivesArgumentsAsTheyWereTyped) {
    EXPECT_EQ(seenBy(L"run --json /tmp/x -q \"C:\\x y\" - / -- \"\" last"),
              (Texts{"probe.k5x", "run", "--json", "/tmp/x", "-q", "C:\\x y", "-", "/", "--", "",
                     "last"}));
}

TEST(CommandLineParser, GivesOtherScriptsInUtf8) {
    EXPECT_EQ(seenBy(L"--ssid=Caf\u00e9 \u65e5\u672c -\U0001F4F6"),
              (Texts{"probe.k5x", "--ssid=Caf\xc3\xa9", "\xe6\x97\xa5\xe6\x9c\xac",
                     "-\xf0\x9f\x93\xb6"}));
}

TEST(CommandLineParser, GivesNoArgumentsWhenThereAreNone) {
    EXPECT_EQ(seenBy(L""), Texts{"probe.k5x"});
}

TEST(CommandLineParser, PutsADashBeforeAFlagThatIsNotTheProcessesOwn) {
    libUikit::CommandLineParser parser(mrl::String("module"));
    parser.ParseParam(L"never typed", TRUE, FALSE);
    parser.ParseParam(L"plain", FALSE, TRUE);
    EXPECT_EQ(textsOf(parser), (Texts{"module", "-never typed", "plain"}));
}

} // namespace
