#include "ReportKinds.h"

#include "HtmlReport.h"
#include "JUnitReport.h"
#include "Report.h"

namespace tesk5 {

const std::vector<ReportKind>& reportKinds() {
    static const std::vector<ReportKind> kinds = {
        {"--json", &reportOf}, {"--junit", &junitReportOf}, {"--html", &htmlReportOf, true}};
    return kinds;
}

} // namespace tesk5
