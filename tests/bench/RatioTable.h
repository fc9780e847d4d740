#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What a benchmark found, as rows of a Markdown table on standard output, and its verdict.
///
/// Every figure is judged against a baseline that was measured in turn with it, in the same
/// process run: a slow or busy machine slows both.
class RatioTable
{
public:
    struct Unit
    {
        const char* name;
        double perSecond; ///< how many of it a second has
        int digits;
    };
    static constexpr Unit kNanoseconds{"ns", 1e9, 0};
    static constexpr Unit kMicroseconds{"µs", 1e6, 0};
    static constexpr Unit kMilliseconds{"ms", 1e3, 2};

    using Measure = std::function<double()>; ///< seconds of one round

    /// Measures both in turn for @p rounds rounds and takes the best of each, which is what least
    /// was in the way of. Beyond the limit it goes on for up to twice as many rounds more before
    /// it says so. Without a limit it only reports.
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
