#include <mrl/System.h>

#include <mrl/Unicode.h>

#include <gtest/gtest.h>

namespace {

TEST(System, AByteIsTheCharacterOfTheSameValue) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(mrl::System::byteToChar(static_cast<char>(byte)), static_cast<mrl::Char>(byte));
    }
}

TEST(System, APathKeepsEveryCharacter) {
    const std::string name = "M\xC3\xBCller \xE6\x97\xA5 \xF0\x9F\x93\xB6.log";
    const std::u8string back = mrl::System::path(name).u8string();
    EXPECT_EQ(std::string(back.begin(), back.end()), name);
}

TEST(System, ResourcesLieBesideTheExecutableFirst) {
    const std::filesystem::path folder = mrl::System::executableFolder();
    const auto folders = mrl::System::resourceFolders("example");
    ASSERT_EQ(folders.size(), 2U);
    if (mrl::System::name() == "windows") {
        EXPECT_EQ(folders[0], folder / "resources");
        EXPECT_EQ(folders[1], "resources");
    } else {
        EXPECT_EQ(folders[0], folder / "share" / "example");
        EXPECT_EQ(folders[1], folder.parent_path() / "share" / "example");
    }
}

} // namespace
