#include "ReportKinds.h"

#include "JUnitReport.h"
#include "Report.h"

namespace tesk5 {

const std::vector<ReportKind>& reportKinds() {
    static const std::vector<ReportKind> kinds = {{"--json", &reportOf},
                                                  {"--junit", &junitReportOf}};
    return kinds;
}

} // namespace tesk5
