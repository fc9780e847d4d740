#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// Keeps the repetitions of every benchmark for a comparison of their medians.
class MedianReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Seconds of one iteration of the benchmark with this name; 0 when it did not run.
    [[nodiscard]] double seconds(const std::string& name) const;

    /// Runs all registered benchmarks; their repetitions alternate.
    /// @return false when the arguments are not understood
    bool run(int repetitions);

private:
    std::map<std::string, std::vector<double>> m_samples;
};
