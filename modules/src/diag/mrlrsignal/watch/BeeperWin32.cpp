#include <watch/Tone.h>

#include <windows.h>

#include <cmath>

namespace watch {

namespace {

class SystemBeeper final : public Beeper {
public:
    bool sound(double hertz, std::chrono::milliseconds length) override {
        // Fails on a server without a sound device.
        return Beep(static_cast<DWORD>(std::lround(hertz)), static_cast<DWORD>(length.count())) !=
               0;
    }
};

} // namespace

std::unique_ptr<Beeper> openBeeper() {
    return std::make_unique<SystemBeeper>();
}

} // namespace watch
