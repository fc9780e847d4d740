#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The results of a benchmark, as rows of a Markdown table on standard output, and its exit status.
///
/// Every figure is compared with a baseline that was measured alternately with it in the same
/// process: a slow or busy machine slows both.
class RatioTable
{
public:
    struct Unit
    {
        const char* name;
        double perSecond; ///< how many of the unit are in a second
        int digits;
    };
    static constexpr Unit kNanoseconds{"ns", 1e9, 0};
    static constexpr Unit kMicroseconds{"µs", 1e6, 0};
    static constexpr Unit kMilliseconds{"ms", 1e3, 2};

    using Measure = std::function<double()>; ///< returns the seconds of one round

    /// Measures both alternately for @p rounds rounds and takes the best of each, which is
    /// disturbed least. While the limit is exceeded it measures up to twice as many more rounds.
    /// Without a limit it only reports.
    void compare(const std::string& what, const Unit& unit, const Measure& baseline,
                 const Measure& measured, int rounds, std::optional<double> limit);

    /// A row of samples that were taken elsewhere, in seconds.
    void addRatio(const std::string& what, const Unit& unit, double baseline, double measured,
                  std::optional<double> limit);
    /// A figure without a baseline.
    void addFigure(const std::string& what, const Unit& unit, double seconds);

    /// 0 when every ratio was within its limit.
    [[nodiscard]] int exitCode() const { return m_exceeded ? 1 : 0; }

    [[nodiscard]] static double median(std::vector<double> samples);

private:
    bool m_exceeded = false;
};
