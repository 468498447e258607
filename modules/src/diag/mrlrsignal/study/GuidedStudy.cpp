#include <study/GuidedStudy.h>

#include <gauge/TypeOne.h>
#include <levels/TargetParameters.h>
#include <options/CommandOptions.h>
#include <study/StudyFile.h>

#include <tesk5/BadInput.h>
#include <tesk5/Number.h>
#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include <mrl/Clock.h>
#include <mrl/Files.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <utility>

namespace study {

namespace {

using gauge::Design;
using tesk5::BadInput;
using tesk5::message;
using tesk5::RunContext;

constexpr const char* REPEAT = "r";
constexpr const char* STRIKE_OUT = "s";
constexpr const char* END = "q";

tesk5::Event::Variables aboutDesign(const Design& design) {
    return {{"Parts", design.parts},
            {"Operators", design.operators},
            {"Trials", design.trials},
            {"Count", design.cells() * design.trials}};
}

std::string lockedPath(const std::string& path, const FileLock& lock) {
    if (!lock.isHeld()) {
        throw BadInput{message("STUDY_GUIDE_IN_USE", {{"File", path}})};
    }
    return path;
}

Design designOfNew(const StudySize& size) {
    if (!size.design && !size.ofOnePart) {
        throw BadInput{message("STUDY_GUIDE_NO_SIZE")};
    }
    return size.design.value_or(
        Design{.parts = 1, .operators = 1, .trials = gauge::TYPE_ONE_READINGS});
}

StudySession sessionIn(const std::string& path, const StudySize& size, const std::string& target) {
    if (mrl::fileKind(mrl::System::path(path)) == mrl::FileKind::missing) {
        const Design design = designOfNew(size);
        std::random_device seed;
        std::mt19937 random(seed());
        return {design, target, random};
    }
    std::optional<StudySession> session = StudySession::ofFile(studyIn(path));
    if (!session) {
        throw BadInput{message("STUDY_GUIDE_NO_SESSION", {{"File", path}})};
    }
    if (size.ofOnePart != (session->design().parts == 1) ||
        (size.design && *size.design != session->design())) {
        tesk5::Event::Variables variables = aboutDesign(session->design());
        variables.emplace_back("File", path);
        throw BadInput{message("STUDY_GUIDE_OTHER_SIZE", variables)};
    }
    if (target != session->target()) {
        throw BadInput{message("STUDY_GUIDE_OTHER_TARGET",
                               {{"File", path}, {"Kept", session->target()}, {"Name", target}})};
    }
    return *std::move(session);
}

void say(RunContext& context, const std::string& line) {
    options::printLines(context, {line});
}

// What was typed behind `question`; nothing when no more will be.
std::optional<std::string> answerTo(const std::string& question, RunContext& context) {
    context.output << question << " ";
    context.output.flush();
    std::optional<std::string> answer =
        context.input->line([&context] { return context.stopRequest.raised(); });
    if (!answer) {
        context.output << "\n";
    }
    return answer;
}

} // namespace

GuidedStudy::GuidedStudy(const std::string& path, const StudySize& size, const std::string& target)
    : m_path(path), m_lock(path), m_file(lockedPath(path, m_lock)),
      m_session(sessionIn(path, size, target)) {}

bool GuidedStudy::run(const Measure& measure, RunContext& context) {
    if (m_session.left() == 0) {
        return true;
    }
    tesk5::Event::Variables variables = aboutDesign(m_session.design());
    variables.emplace_back("Done", m_session.done());
    variables.emplace_back("File", m_path);
    const char* const begin =
        m_session.design().parts == 1 ? "STUDY_GUIDE_BEGIN_ONE" : "STUDY_GUIDE_BEGIN";
    say(context, message(m_session.done() == 0 ? begin : "STUDY_GUIDE_GOES_ON", variables));
    say(context, message("STUDY_GUIDE_KEYS"));
    bool goesOn = keep(context);
    while (goesOn && m_session.left() > 0) {
        showStep(context);
        const std::optional<std::string> answer = answerTo(">", context);
        if (!answer || *answer == END) {
            break;
        }
        if (answer->empty()) {
            goesOn = measureStep(measure, context);
        } else if (*answer == REPEAT) {
            goesOn = strikeOut(Again::NOW, context);
        } else if (*answer == STRIKE_OUT) {
            goesOn = strikeOut(Again::LAST, context);
        } else {
            say(context, message("STUDY_GUIDE_KEYS"));
        }
    }
    if (m_session.left() > 0) {
        say(context, message("STUDY_GUIDE_ENDED", {{"Left", m_session.left()}, {"File", m_path}}));
    }
    return m_session.left() == 0;
}

void GuidedStudy::showStep(RunContext& context) const {
    const StudyStep step = *m_session.next();
    say(context, "");
    say(context, message("STUDY_GUIDE_STEP", {{"Done", m_session.done()},
                                              {"Left", m_session.left()},
                                              {"Operator", step.op + 1},
                                              {"Part", step.part + 1},
                                              {"Trial", step.trial + 1},
                                              {"Trials", m_session.design().trials}}));
}

bool GuidedStudy::measureStep(const Measure& measure, RunContext& context) {
    say(context, message("STUDY_GUIDE_MEASURING"));
    const readings::Sampling sampling = measure();
    if (sampling.none == readings::NoLevel::INTERRUPTED) {
        return false;
    }
    if (sampling.none) {
        say(context, levels::whyNoLevel(sampling));
        return true;
    }
    const readings::Sampled& sampled = sampling.sampled;
    m_session.add(sampled.level, sampled.samples.size(),
                  mrl::utcText(mrl::Clock::current().utcNow()));
    if (!keep(context)) {
        m_session.strikeOut({}, Again::NOW); // here alone: the file never had it
        return false;
    }
    say(context, message("STUDY_GUIDE_MEASURED", {{"Level", levels::levelIn(sampled.level)},
                                                  {"Readings", sampled.samples.size()}}));
    return true;
}

bool GuidedStudy::strikeOut(Again again, RunContext& context) {
    const StudyMeasurement* const last = m_session.last();
    if (last == nullptr) {
        say(context, message("STUDY_GUIDE_NOTHING_YET"));
        return true;
    }
    const std::optional<std::string> reason =
        answerTo(message("STUDY_GUIDE_REASON", {{"Level", levels::levelIn(last->level)},
                                                {"Operator", last->step.op + 1},
                                                {"Part", last->step.part + 1}}),
                 context);
    if (!reason) {
        return false;
    }
    if (reason->empty()) {
        say(context, message("STUDY_GUIDE_STAYS"));
        return true;
    }
    // Not every terminal writes UTF-8, and a study is.
    m_session.strikeOut(mrl::toUtf8(mrl::toUtf16(*reason)), again);
    return keep(context);
}

// A full disk need not cost the measurement: the person makes room, and it is kept then.
bool GuidedStudy::keep(RunContext& context) const {
    for (;;) {
        try {
            m_file.replace(m_session.file().dump(2) + "\n");
            return true;
        } catch (const tesk5::TeskException& failure) {
            say(context, failure.toString().getUTF8String().c_str());
        }
        const std::optional<std::string> answer =
            answerTo(message("STUDY_GUIDE_MAKE_ROOM"), context);
        if (!answer || *answer == END) {
            return false;
        }
    }
}

} // namespace study
