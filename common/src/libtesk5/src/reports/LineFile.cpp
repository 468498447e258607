#include "reports/LineFile.h"

#include <tesk5/BadInput.h>
#include <tesk5/ReportFile.h>
#include <tesk5/Texts.h>

#include "reports/ReportName.h"
#include "texts/SystemReason.h"

#include <mrl/System.h>

namespace tesk5 {

LineFile::LineFile(std::string path, bool isNamedAnew)
    : m_path(std::move(path)), m_isNamedAnew(isNamedAnew) {
    if (const auto reason = whyNotWritable(m_path)) {
        throw BadInput{message("INPUT_REPORT_UNWRITABLE", {{"File", m_path}, {"Reason", *reason}})};
    }
}

void LineFile::write(std::string_view line) {
    if (m_failure) {
        return;
    }
    try {
        if (!m_file) {
            if (m_isNamedAnew) {
                m_path = takenName(m_path);
            }
            const std::filesystem::path path = mrl::System::path(m_path);
            std::error_code ignored; // the file then says why it cannot be made
            std::filesystem::create_directories(path.parent_path(), ignored);
            m_file.emplace(path);
        }
        m_file->write(line);
    } catch (const mrl::FileFailure& failure) {
        m_failure = fileReason(failure).text();
    }
}

std::optional<std::string> LineFile::close() {
    try {
        if (m_file && !m_failure) {
            m_file->close();
        }
    } catch (const mrl::FileFailure& failure) {
        m_failure = fileReason(failure).text();
    }
    m_file.reset();
    if (m_failure) {
        return message("INPUT_REPORT_NOT_REPLACED", {{"File", m_path}, {"Reason", *m_failure}});
    }
    return std::nullopt;
}

} // namespace tesk5
