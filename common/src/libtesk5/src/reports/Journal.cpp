#include "reports/Journal.h"

#include <tesk5/BadInput.h>
#include <tesk5/ReportFile.h>
#include <tesk5/RunIdentityJson.h>
#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "reports/ReportJson.h"
#include "texts/SystemReason.h"

#include <mrl/System.h>

#include <filesystem>
#include <system_error>

namespace tesk5 {

namespace {

constexpr unsigned LONGEST_CHECK_MS = 2000;
constexpr unsigned LONGEST_APPEND_MS = 10000;

Json testJson(const Outcome& outcome) {
    Json json = {{"test", outcome.test->name().utf8()},
                 {"device", jsonOf(*outcome.device)},
                 {"result", outcome.result.name()}};
    if (!outcome.failure.empty()) {
        json["failure"] = outcome.failure;
    }
    json["measurements"] = listOf(outcome.measurements);
    return json;
}

Json testJson(const TestWithoutDevice& without) {
    return {{"test", without.test->name().utf8()},
            {"result", TestResult::CANNOTRUN().name()},
            {"measurements", Json::array()}};
}

} // namespace

std::string journalLineOf(const RunRecord& run) {
    Json json = {{"journal", JOURNAL_VERSION},
                 {"runIdentifier", run.identity.identifier},
                 {"started", mrl::utcText(run.started)},
                 {"ended", mrl::utcText(run.ended)},
                 {"exit", run.exitValue},
                 {"result", worstResult(run).name()},
                 {"module", moduleJson(run.version)}};
    json.update(identityJson(run.identity)); // the identifier keeps its place
    json["tests"] = listOf(run.outcomes, [](const Outcome& outcome) { return testJson(outcome); });
    for (const TestWithoutDevice& without : run.withoutDevice) {
        json["tests"].push_back(testJson(without));
    }
    constexpr int NO_INDENT = -1;
    return json.dump(NO_INDENT, ' ', true, Json::error_handler_t::replace);
}

Journal::Journal(std::string path) : m_path(std::move(path)) {
    const std::filesystem::path file = mrl::System::path(m_path);
    std::optional<std::string> reason;
    if (mrl::fileKind(file) == mrl::FileKind::missing) {
        reason = whyNotWritable(m_path);
    } else {
        try {
            mrl::checkAppendable(file, LONGEST_CHECK_MS);
        } catch (const mrl::FileFailure& failure) {
            reason = writeReason(failure).text();
        }
    }
    if (reason) {
        throw BadInput{
            message("INPUT_JOURNAL_UNWRITABLE", {{"File", m_path}, {"Reason", *reason}})};
    }
}

void Journal::append(const RunRecord& run) const {
    const std::filesystem::path file = mrl::System::path(m_path);
    std::error_code ignored; // the file then says why it cannot be made
    std::filesystem::create_directories(file.parent_path(), ignored);
    try {
        mrl::appendLine(file, journalLineOf(run), LONGEST_APPEND_MS);
    } catch (const mrl::FileFailure& failure) {
        throw TeskException(
            TeskString(message("INPUT_JOURNAL_NOT_WRITTEN",
                               {{"File", m_path}, {"Reason", writeReason(failure).text()}})));
    }
}

} // namespace tesk5
