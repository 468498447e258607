// ALSA, found on the first sound: a station without a sound card works without the library.
#include <watch/Tone.h>

#include <alsa/asoundlib.h>

#include <algorithm>
#include <cmath>
#include <dlfcn.h>
#include <numbers>
#include <optional>
#include <vector>

namespace watch {

namespace {

constexpr unsigned RATE = 48000;
constexpr unsigned LATENCY_MICROSECONDS = 100'000;
// Loud enough beside a fan.
constexpr double AMPLITUDE = 10'000;
// A sound that begins or ends at once cracks.
constexpr double FADE_SECONDS = 0.005;

// X(name): the functions that are used.
#define WATCH_ALSA_FUNCTIONS(X)                                                                    \
    X(snd_lib_error_set_handler)                                                                   \
    X(snd_pcm_open)                                                                                \
    X(snd_pcm_close)                                                                               \
    X(snd_pcm_set_params)                                                                          \
    X(snd_pcm_prepare)                                                                             \
    X(snd_pcm_writei)                                                                              \
    X(snd_pcm_drain)

struct Alsa {
// NOLINTNEXTLINE(bugprone-macro-parentheses): declarations take none
#define WATCH_DECLARE(name) decltype(&::name) name = nullptr;
    WATCH_ALSA_FUNCTIONS(WATCH_DECLARE)
#undef WATCH_DECLARE
};

// What the library would write to the error stream would stand in the middle of the view.
// NOLINTNEXTLINE(cert-dcl50-cpp): the library's type of handler
void ignoreMessage(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                   const char* /*format*/, ...) {}

// Null without the library, which stays loaded.
const Alsa* alsa() {
    static const auto loaded = []() -> std::optional<Alsa> {
        void* const library = dlopen("libasound.so.2", RTLD_NOW);
        if (library == nullptr) {
            return std::nullopt;
        }
        Alsa functions;
#define WATCH_FIND(name)                                                                           \
    functions.name = reinterpret_cast<decltype(&::name)>(dlsym(library, #name));                   \
    if (functions.name == nullptr) {                                                               \
        return std::nullopt;                                                                       \
    }
        WATCH_ALSA_FUNCTIONS(WATCH_FIND)
#undef WATCH_FIND
        functions.snd_lib_error_set_handler(&ignoreMessage);
        return functions;
    }();
    return loaded ? &*loaded : nullptr;
}

std::vector<std::int16_t> wave(double hertz, std::chrono::milliseconds length) {
    const double seconds = std::chrono::duration<double>(length).count();
    std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds * RATE));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double at = static_cast<double>(i) / RATE;
        const double fade = std::min({1.0, at / FADE_SECONDS, (seconds - at) / FADE_SECONDS});
        samples[i] = static_cast<std::int16_t>(
            std::lround(AMPLITUDE * fade * std::sin(2 * std::numbers::pi * hertz * at)));
    }
    return samples;
}

class AlsaBeeper final : public Beeper {
public:
    AlsaBeeper(const Alsa& functions, snd_pcm_t* device)
        : m_functions(functions), m_device(device) {}
    ~AlsaBeeper() override { m_functions.snd_pcm_close(m_device); }

    bool sound(double hertz, std::chrono::milliseconds length) override {
        const std::vector<std::int16_t> samples = wave(hertz, length);
        // -ENODEV and its like: the card was pulled.
        return m_functions.snd_pcm_prepare(m_device) == 0 &&
               m_functions.snd_pcm_writei(m_device, samples.data(), samples.size()) >= 0 &&
               m_functions.snd_pcm_drain(m_device) == 0;
    }

private:
    const Alsa& m_functions;
    snd_pcm_t* m_device;
};

} // namespace

std::unique_ptr<Beeper> openBeeper() {
    const Alsa* const functions = alsa();
    snd_pcm_t* device = nullptr;
    if (functions == nullptr ||
        functions->snd_pcm_open(&device, "default", SND_PCM_STREAM_PLAYBACK, 0) != 0) {
        return nullptr; // -ENOENT: no card; -EBUSY
    }
    auto beeper = std::make_unique<AlsaBeeper>(*functions, device);
    constexpr unsigned CHANNELS = 1;
    constexpr int RESAMPLED = 1;
    if (functions->snd_pcm_set_params(device, SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED,
                                      CHANNELS, RATE, RESAMPLED, LATENCY_MICROSECONDS) != 0) {
        return nullptr;
    }
    return beeper;
}

} // namespace watch
