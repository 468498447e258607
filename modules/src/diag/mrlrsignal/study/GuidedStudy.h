// Leads a person through the measurements of a gauge study, and keeps each of them at once.
#pragma once

#include <readings/Sampling.h>
#include <study/FileLock.h>
#include <study/StudySession.h>

#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>

#include <functional>
#include <optional>
#include <string>

namespace study {

/// What a study under way is to be.
struct StudySize {
    bool ofOnePart = false;
    /// None: that of the file; a new study of one part has 25 trials then.
    std::optional<gauge::Design> design;
};

class GuidedStudy {
public:
    /// Makes one measurement of the part that was put down.
    using Measure = std::function<readings::Sampling()>;

    /// Goes on with the study in the file, or starts one in a file that is not there yet.
    /// \param size of a new study; one that is there has to be of the same kind, and of this design
    /// where there is one
    /// \param target what people call the access point
    /// Failure: throws tesk5::BadInput, also while another process works on the file
    GuidedStudy(const std::string& path, const StudySize& size, const std::string& target);

    /// Measures until nothing is left, the person ends it, or the context's stop request is raised.
    /// \return whether nothing is left
    bool run(const Measure& measure, tesk5::RunContext& context);

    const StudySession& session() const { return m_session; }
    const tesk5::ReportFile& file() const { return m_file; }

private:
    void showStep(tesk5::RunContext& context) const;
    bool measureStep(const Measure& measure, tesk5::RunContext& context);
    bool strikeOut(Again again, tesk5::RunContext& context);
    bool keep(tesk5::RunContext& context) const;

    std::string m_path;
    FileLock m_lock;
    tesk5::ReportFile m_file;
    StudySession m_session;
};

} // namespace study
