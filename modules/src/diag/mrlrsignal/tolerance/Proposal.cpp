#include <tolerance/Proposal.h>

#include <statistics/Moments.h>

#include <algorithm>
#include <cmath>

namespace tolerance {

namespace {

// Configurations carry tenths of a dB. A limit is rounded down: it stops no more than computed.
double roundedDown(double level) {
    constexpr double ROUNDING_ERROR = 1e-6;
    return std::floor(level * 10 + ROUNDING_ERROR) / 10;
}

std::size_t countBelow(statistics::Readings levels, double limit) {
    return static_cast<std::size_t>(std::count_if(levels.begin(), levels.end(),
                                                  [limit](double level) { return level < limit; }));
}

std::size_t missing(const LowerLimit& limit, std::size_t units) {
    return limit.method == Method::NONE ? limit.unitsNeeded - units : 0;
}

void judge(ProposedLimit& limit, statistics::Readings good, statistics::Readings bad,
           double confidence) {
    limit.goodStopped = countBelow(good, limit.stopsBelow);
    limit.ofGood = stoppedShare(limit.goodStopped, good.size(), confidence);
    if (limit.tolerance.method == Method::NORMAL) {
        limit.ofNormalGood = normalShareBelow(limit.stopsBelow, good, confidence);
    }
    if (!bad.empty()) {
        limit.ofBad = stoppedShare(countBelow(bad, limit.stopsBelow), bad.size(), confidence);
    }
}

} // namespace

LowerLimit lowerLimit(statistics::Readings levels, const Promise& promise, bool isNormal) {
    LowerLimit limit;
    limit.promise = promise;
    limit.unitsNeeded = unitsNeeded(1, promise);
    if (isNormal) {
        limit.method = Method::NORMAL;
        limit.factor = normalFactor(levels.size(), promise);
        limit.level =
            statistics::mean(levels) - limit.factor * statistics::standardDeviation(levels);
        return limit;
    }
    limit.rank = rankOfLimit(levels.size(), promise);
    if (limit.rank > 0) {
        limit.method = Method::ORDER_STATISTICS;
        limit.level = statistics::sorted(levels)[limit.rank - 1];
    }
    return limit;
}

Proposal propose(statistics::Readings good, statistics::Readings bad,
                 const ProposalOptions& options) {
    Proposal proposal;
    proposal.mean = statistics::mean(good);
    if (statistics::step(good) > 0) {
        proposal.deviation = statistics::standardDeviation(good);
        proposal.fit = fitNormal(good);
        proposal.isNormal = !proposal.fit.isRefused();
    }
    const LowerLimit warning = lowerLimit(good, options.warning, proposal.isNormal);
    const LowerLimit failing = lowerLimit(good, options.failing, proposal.isNormal);
    proposal.missingForWarning = missing(warning, good.size());
    proposal.missingForFailing = missing(failing, good.size());
    if (warning.method == Method::NONE) {
        return proposal;
    }
    proposal.warning.emplace();
    proposal.warning->tolerance = warning;
    proposal.warning->level = roundedDown(warning.level - options.guardBand);
    proposal.warning->stopsBelow = proposal.warning->level + options.guardBand;
    judge(*proposal.warning, good, bad, options.confidence);
    if (failing.method == Method::NONE) {
        return proposal;
    }
    proposal.failing.emplace();
    proposal.failing->tolerance = failing;
    proposal.failing->level = roundedDown(std::min(
        failing.level + options.guardBand, proposal.warning->level - 2 * options.guardBand));
    proposal.failing->stopsBelow = proposal.failing->level - options.guardBand;
    judge(*proposal.failing, good, bad, options.confidence);
    return proposal;
}

} // namespace tolerance
