// The tone, with a beeper that takes notes.
#include <watch/Tone.h>

#include <gtest/gtest.h>

#include <vector>

namespace watch {
namespace {

// What was sounded, shared with a test that waits for it.
struct Notes {
    std::mutex mutex;
    std::condition_variable sounded;
    std::vector<double> hertz;
    bool works = true;

    void waitFor(double wanted) {
        std::unique_lock lock(mutex);
        sounded.wait(lock, [&] { return !hertz.empty() && hertz.back() == wanted; });
    }
};

class NotingBeeper final : public Beeper {
public:
    explicit NotingBeeper(Notes& notes) : m_notes(notes) {}

    bool sound(double hertz, std::chrono::milliseconds length) override {
        EXPECT_GT(length.count(), 0);
        const std::lock_guard lock(m_notes.mutex);
        m_notes.hertz.push_back(hertz);
        m_notes.sounded.notify_one();
        return m_notes.works;
    }

private:
    Notes& m_notes;
};

TEST(Tones, HaveAPitchThatRisesAnOctaveInTwentyDecibels) {
    EXPECT_DOUBLE_EQ(pitchOf(-100), 220);
    EXPECT_DOUBLE_EQ(pitchOf(-60), 880);
    EXPECT_DOUBLE_EQ(pitchOf(-40), 1760);
    EXPECT_DOUBLE_EQ(pitchOf(0), pitchOf(-10));
    EXPECT_DOUBLE_EQ(pitchOf(-128), pitchOf(-110));
}

TEST(Tones, FollowTheLevel) {
    Notes notes;
    Tone tone(std::make_unique<NotingBeeper>(notes));
    tone.follow(-60);
    notes.waitFor(880);
    tone.follow(-40);
    notes.waitFor(1760);
    EXPECT_FALSE(tone.hasFailed());
}

TEST(Tones, AreSilentWithoutALevel) {
    Notes notes;
    {
        Tone tone(std::make_unique<NotingBeeper>(notes));
        tone.follow(std::nullopt);
    }
    EXPECT_TRUE(notes.hertz.empty());
}

TEST(Tones, EndWithTheFirstSoundThatFails) {
    Notes notes;
    notes.works = false;
    Tone tone(std::make_unique<NotingBeeper>(notes));
    tone.follow(-60);
    notes.waitFor(880);
    while (!tone.hasFailed()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(notes.hertz.size(), 1U);
}

} // namespace
} // namespace watch
