#include "MedianReporter.h"

#include "RatioTable.h"

void MedianReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration && !run.error_occurred && run.iterations > 0)
            m_samples[run.run_name.function_name + '/' + run.run_name.args].push_back(
                run.real_accumulated_time / static_cast<double>(run.iterations));
    }
}

double MedianReporter::seconds(const std::string& name) const
{
    const auto found = m_samples.find(name);
    return found == m_samples.end() ? 0.0 : RatioTable::median(found->second);
}

bool MedianReporter::run(int repetitions)
{
    std::string program = "bench";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::string count = "--benchmark_repetitions=" + std::to_string(repetitions);
    std::string minimum = "--benchmark_min_time=0.05";
    std::vector<char*> arguments{program.data(), interleaving.data(), count.data(), minimum.data()};
    int argumentCount = static_cast<int>(arguments.size());
    benchmark::Initialize(&argumentCount, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments.data()))
        return false;
    benchmark::RunSpecifiedBenchmarks(this);
    return true;
}
