#include "ReportKinds.h"

#include "Report.h"

namespace tesk5 {

const std::vector<ReportKind>& reportKinds() {
    static const std::vector<ReportKind> kinds = {{"--json", &reportOf}};
    return kinds;
}

} // namespace tesk5
