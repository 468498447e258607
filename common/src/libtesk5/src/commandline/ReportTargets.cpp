#include "commandline/ReportTargets.h"

#include <tesk5/BadInput.h>
#include <tesk5/TeskException.h>

#include "reports/ReportKinds.h"
#include "reports/ReportName.h"
#include "texts/Lists.h"

#include <mrl/System.h>

#include <filesystem>

namespace tesk5 {

namespace {

// Removes the empty file of a report that could not be written.
void giveBack(const std::string& takenName) {
    std::error_code ignored;
    std::filesystem::remove(mrl::System::path(takenName), ignored);
}

} // namespace

ReportTargets::ReportTargets(const std::vector<RequestedReport>& requested,
                             const std::optional<std::string>& journalFile,
                             const RunIdentity& identity, std::vector<std::string> kept)
    : m_kept(std::move(kept)) {
    const NameParts parts = namePartsOf(identity, TestResult::PASS().name());
    for (const RequestedReport& report : requested) {
        const std::string name = filledName(report.file, parts);
        m_targets.push_back({.requested = report,
                             .isNamedAnew = isNamedAnew(report.file, parts),
                             .file = ReportFile(name, m_kept)});
    }
    if (journalFile) {
        m_journal.emplace(*journalFile);
    }
}

void ReportTargets::write(const Target& target, const RunRecord& record) const {
    const std::string text = target.requested.kind->text(record);
    if (!target.isNamedAnew) {
        target.file.replace(text);
        return;
    }
    const NameParts parts = namePartsOf(record.identity, worstResult(record).name());
    const std::string name = takenName(filledName(target.requested.file, parts));
    try {
        ReportFile(name, m_kept).replace(text);
    } catch (const BadInput& refused) { // what was writable when the run began is no more
        giveBack(name);
        throw TeskException(TeskString(refused.line));
    } catch (const TeskException&) {
        giveBack(name);
        throw;
    }
}

void ReportTargets::write(const RunRecord& record) const {
    std::vector<std::string> failures;
    const auto attempt = [&failures](const auto& write) {
        try {
            write();
        } catch (const TeskException& exception) {
            failures.push_back(exception.toString().getUTF8String().bytes());
        }
    };
    for (const Target& target : m_targets) {
        attempt([&] { write(target, record); });
    }
    if (m_journal) {
        attempt([&] { m_journal->append(record); });
    }
    if (!failures.empty()) {
        throw TeskException(TeskString(phrasesListed(failures)));
    }
}

} // namespace tesk5
