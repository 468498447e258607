// Leads a person through the measurements of a gauge study, and keeps each of them at once.
#pragma once

#include <guide/FileLock.h>
#include <guide/StudySession.h>

#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>

#include <readings/Sampling.h>

#include <functional>
#include <optional>
#include <string>

namespace guide {

class GuidedStudy {
public:
    /// Makes one measurement of the part that was put down.
    using Measure = std::function<readings::Sampling()>;

    /// Goes on with the study in the file, or starts one in a file that is not there yet.
    /// \param design of a new study; for one that is there, none or the same
    /// \param target what people call the access point
    /// Failure: throws tesk5::BadInput, also while another process works on the file
    GuidedStudy(const std::string& path, const std::optional<gauge::Design>& design,
                const std::string& target);

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

} // namespace guide
