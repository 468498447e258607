// Keys out of bytes.
#include "Letter.h"

#include <watch/KeyReader.h>

#include <gmock/gmock.h>

#include <vector>

namespace watch {

void PrintTo(const KeyPress& press, std::ostream* stream) {
    *stream << static_cast<int>(press.key) << " '" << press.character << "'";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<KeyPress> pressed(KeyReader& reader) {
    std::vector<KeyPress> all;
    for (KeyPress press = reader.next(); press.key != Key::NONE; press = reader.next()) {
        all.push_back(press);
    }
    return all;
}

std::vector<KeyPress> pressed(std::string_view bytes) {
    KeyReader reader;
    reader.add(bytes);
    return pressed(reader);
}

KeyPress key(Key which) {
    return {which};
}

TEST(KeyReaders, KnowTheKeysOfTerminals) {
    EXPECT_THAT(pressed("q\r\x03"), ElementsAre(letter('q'), key(Key::ENTER), key(Key::INTERRUPT)));
    EXPECT_THAT(pressed("\x1b[A\x1bOB\x1b[5~\x1b[6~\x1b[H\x1b[4~"),
                ElementsAre(key(Key::UP), key(Key::DOWN), key(Key::PAGE_UP), key(Key::PAGE_DOWN),
                            key(Key::FIRST), key(Key::LAST)));
}

TEST(KeyReaders, SkipWhatTheyDoNotKnow) {
    EXPECT_THAT(pressed("\x1b[200~\x1b[1;5C\xC3\xA4\x01 x"), ElementsAre(letter('x')));
}

TEST(KeyReaders, WaitForTheRestOfASequence) {
    KeyReader reader;
    reader.add("\x1b");
    EXPECT_THAT(pressed(reader), IsEmpty());
    EXPECT_TRUE(reader.isUndecided());
    reader.add("[");
    EXPECT_THAT(pressed(reader), IsEmpty());
    reader.add("A");
    EXPECT_THAT(pressed(reader), ElementsAre(key(Key::UP)));
    EXPECT_FALSE(reader.isUndecided());
}

TEST(KeyReaders, TakeALoneEscapeForTheKey) {
    KeyReader reader;
    EXPECT_EQ(reader.giveUp(), key(Key::NONE));
    reader.add("\x1b");
    EXPECT_THAT(pressed(reader), IsEmpty());
    EXPECT_EQ(reader.giveUp(), key(Key::ESCAPE));
    EXPECT_FALSE(reader.isUndecided());
    EXPECT_THAT(pressed("\x1bq"), ElementsAre(key(Key::ESCAPE), letter('q')));
}

} // namespace
} // namespace watch
