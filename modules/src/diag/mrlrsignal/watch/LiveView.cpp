#include <watch/LiveView.h>

#include <watch/Model.h>
#include <watch/Screen.h>
#include <watch/Tone.h>

#include <tesk5/Texts.h>

#include <algorithm>

namespace watch {

namespace {

// The age of a reading that nothing follows moves on in these steps.
constexpr std::chrono::milliseconds REDRAWN_EVERY{500};
// How long a wait for keys takes at most.
constexpr std::chrono::milliseconds LONGEST_WAIT{100};
// A level that is older is silent.
constexpr std::chrono::seconds TONE_LASTS{3};
constexpr int PAGE = 10;
constexpr int WHOLE_LIST = 1'000'000;

Moment now() {
    return mrl::Clock::current().now();
}

class LiveView {
public:
    LiveView(Terminal& terminal, const ViewPlan& plan)
        : m_terminal(terminal), m_plan(plan), m_model(plan.adapter, plan.target),
          m_source(plan.interfaceGuid, plan.target.value_or(readings::Target())) {}

    Ending run(const std::function<bool()>& stop) {
        const Moment begin = now();
        while (!m_quit) {
            if (m_terminal.hasEnded() || stop()) {
                return Ending::ENDED_BY_SYSTEM;
            }
            const Moment present = now();
            if (m_plan.longest && present - begin >= *m_plan.longest) {
                return Ending::OVER;
            }
            if (present >= m_source.nextLook()) {
                look(present);
            }
            drawIfNeeded(present);
            const Moment wait =
                std::clamp<Moment>(m_source.nextLook() - now(), Moment::zero(), LONGEST_WAIT);
            press(m_terminal.wait(wait));
        }
        return Ending::QUIT;
    }

private:
    void look(Moment present) {
        const std::vector<readings::Reading> readings = m_source.look();
        m_changed = m_changed || !readings.empty();
        m_model.take(readings, present);
        m_model.setSource(m_source.state());
        const Track* const track = m_model.followed();
        if (track != nullptr && track->last()->at >= present) { // it is of this look
            m_model.setChains(m_source.chainsOf(*track->last()));
        }
        sound(present);
    }

    void drawIfNeeded(Moment present) {
        const Size size = m_terminal.size();
        if (!m_changed && size == m_drawnSize && present - m_drawn < REDRAWN_EVERY) {
            return;
        }
        const std::string change =
            m_screen.changeTo(frame(m_model, present, size, m_plan.colours), size);
        if (!change.empty()) {
            m_terminal.write(change);
        }
        m_changed = false;
        m_drawn = present;
        m_drawnSize = size;
    }

    void press(const KeyPress& press) {
        if (press.key == Key::NONE) {
            return;
        }
        m_changed = true;
        if (press.key == Key::INTERRUPT || press.character == 'q' || press.character == 'Q') {
            m_quit = true;
        } else if (m_model.target()) {
            pressInTarget(press);
        } else {
            pressInList(press);
        }
    }

    void pressInTarget(const KeyPress& press) {
        if (press.key == Key::ESCAPE) {
            m_model.listAll();
            m_source.follow({});
            sound(now());
            return;
        }
        switch (press.character) {
        case 'r':
            m_model.setReference(now());
            break;
        case 'x':
            m_model.dropReference();
            break;
        case 'b':
            m_model.restartBest();
            break;
        case 't':
            switchTone();
            break;
        default:
            break;
        }
    }

    void pressInList(const KeyPress& press) {
        struct Move {
            Key key;
            int rows;
        };
        constexpr Move moves[] = {{Key::UP, -1},
                                  {Key::DOWN, 1},
                                  {Key::PAGE_UP, -PAGE},
                                  {Key::PAGE_DOWN, PAGE},
                                  {Key::FIRST, -WHOLE_LIST},
                                  {Key::LAST, WHOLE_LIST}};
        for (const Move& move : moves) {
            if (move.key == press.key) {
                m_model.moveMark(move.rows, now());
            }
        }
        const std::optional<readings::Target> target = m_model.markedTarget();
        if (press.key == Key::ENTER && target) {
            m_model.watch(*target);
            m_source.follow(*target);
        }
    }

    void switchTone() {
        if (m_tone) {
            m_tone.reset();
            m_model.setTone(false);
            return;
        }
        std::unique_ptr<Beeper> beeper = openBeeper();
        if (beeper == nullptr) {
            m_model.setTone(false, tesk5::message("WATCH_NO_SOUND"));
            return;
        }
        m_tone.emplace(std::move(beeper));
        m_model.setTone(true);
        sound(now());
    }

    void sound(Moment present) {
        if (!m_tone) {
            return;
        }
        if (m_tone->hasFailed()) {
            m_tone.reset();
            m_model.setTone(false, tesk5::message("WATCH_NO_SOUND"));
            return;
        }
        const Track* const track = m_model.followed();
        const bool fresh = track != nullptr && present - track->last()->at <= TONE_LASTS;
        m_tone->follow(fresh ? std::optional(track->last()->dbm) : std::nullopt);
    }

    Terminal& m_terminal;
    const ViewPlan& m_plan;
    Model m_model;
    Source m_source;
    std::optional<Tone> m_tone;
    Screen m_screen;
    Moment m_drawn{0};
    Size m_drawnSize{.columns = 0, .rows = 0};
    bool m_changed = true;
    bool m_quit = false;
};

} // namespace

Ending showLiveView(Terminal& terminal, const ViewPlan& plan, const std::function<bool()>& stop) {
    return LiveView(terminal, plan).run(stop);
}

} // namespace watch
