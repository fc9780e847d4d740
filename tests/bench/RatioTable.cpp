#include "RatioTable.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

constexpr int kMostSets = 3;

std::string figure(const RatioTable::Unit& unit, double seconds)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", unit.digits, seconds * unit.perSecond, unit.name);
    return text;
}

void print(const std::string& what, const std::string& baseline, const std::string& measured,
           const std::string& ratio, const std::string& limit)
{
    std::printf("| %s | %s | %s | %s | %s |\n", what.c_str(), baseline.c_str(), measured.c_str(),
                ratio.c_str(), limit.c_str());
    std::fflush(stdout);
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

} // namespace

void RatioTable::compare(const std::string& what, const Unit& unit, const Measure& baseline,
                         const Measure& measured, int rounds, std::optional<double> limit)
{
    double bestBaseline = std::numeric_limits<double>::infinity();
    double bestMeasured = bestBaseline;
    for (int set = 0; set < kMostSets; ++set) {
        for (int round = 0; round < rounds; ++round) {
            bestBaseline = std::min(bestBaseline, baseline());
            bestMeasured = std::min(bestMeasured, measured());
        }
        if (!limit || bestMeasured <= *limit * bestBaseline)
            break;
    }
    addRatio(what, unit, bestBaseline, bestMeasured, limit);
}

void RatioTable::addRatio(const std::string& what, const Unit& unit, double baseline,
                          double measured, std::optional<double> limit)
{
    const bool exceeds = limit && !(measured <= *limit * baseline);
    m_exceeded = m_exceeded || exceeds;
    print(what, figure(unit, baseline), figure(unit, measured), number(measured / baseline),
          limit ? "≤ " + number(*limit) + (exceeds ? " **exceeded**" : "") : "");
}

void RatioTable::addFigure(const std::string& what, const Unit& unit, double seconds)
{
    print(what, "", figure(unit, seconds), "", "");
}

double RatioTable::median(std::vector<double> samples)
{
    if (samples.empty())
        return 0.0;
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}
