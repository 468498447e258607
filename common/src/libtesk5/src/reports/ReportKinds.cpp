#include "reports/ReportKinds.h"

#include "reports/HtmlReport.h"
#include "reports/JUnitReport.h"
#include "reports/ReportJson.h"
#include "reports/openhtf/OpenHtfReport.h"
#include "reports/wsjf/WsjfReport.h"

namespace tesk5 {

const std::vector<ReportKind>& reportKinds() {
    static const std::vector<ReportKind> kinds = {
        {"--json", &jsonReportOf},
        {"--junit", &junitReportOf},
        {"--html", &htmlReportOf, true},
        {"--wsjf", &wsjfReportOf, false, &refuseWithoutWsjfTags},
        {"--openhtf", &openHtfReportOf}};
    return kinds;
}

} // namespace tesk5
