#include "HidFrame.h"
#include "MedianReporter.h"
#include "RatioTable.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr double kLimit = 0.5;
constexpr int kRepetitions = 15;
constexpr int kHeader = 12;
constexpr int kWholeFrame = 1022;

/// The device's rule as it is documented: eight shifts for every byte.
std::uint16_t bitByBit(const std::uint8_t* data, std::size_t size)
{
    std::uint16_t value = 0xFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        value = static_cast<std::uint16_t>(value ^ data[i]);
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (value & 1U) != 0;
            value = static_cast<std::uint16_t>(value >> 1U);
            if (carry)
                value = static_cast<std::uint16_t>(value ^ 0x1021U);
        }
    }
    return value;
}

std::uint16_t byTable(const std::uint8_t* data, std::size_t size)
{
    return HidFrame::checksum(data, size);
}

template <std::uint16_t (*Checksum)(const std::uint8_t*, std::size_t)>
void checksum(benchmark::State& state)
{
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(state.range(0)));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 37 + 11);
    for (auto _ : state) {
        benchmark::DoNotOptimize(bytes.data());
        benchmark::ClobberMemory();
        benchmark::DoNotOptimize(Checksum(bytes.data(), bytes.size()));
    }
}

} // namespace

BENCHMARK(checksum<bitByBit>)->Name("bits")->Arg(kHeader)->Arg(kWholeFrame);
BENCHMARK(checksum<byTable>)->Name("table")->Arg(kHeader)->Arg(kWholeFrame);

int main()
{
    MedianReporter reporter;
    if (!reporter.run(kRepetitions))
        return 2;
    RatioTable table;
    for (const int size : {kHeader, kWholeFrame}) {
        const std::string suffix = '/' + std::to_string(size);
        table.addRatio("checksum of " + std::to_string(size) + " bytes, to the bit-by-bit rule",
                       RatioTable::kNanoseconds, reporter.seconds("bits" + suffix),
                       reporter.seconds("table" + suffix), kLimit);
    }
    return table.exitCode();
}
