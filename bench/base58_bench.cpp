#include "keys/base58.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace {

using corvane::keys::Base58;

std::vector<std::uint8_t> sample(std::int64_t size)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(size));
    for (std::int64_t index = 0; index < size; ++index) {
        bytes.push_back(static_cast<std::uint8_t>(index * 151 + 7));
    }
    return bytes;
}

void base58Encode(benchmark::State &state)
{
    const auto bytes = sample(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Base58::encode(bytes));
    }
}
BENCHMARK(base58Encode)->Arg(32)->Arg(64);

void base58Decode(benchmark::State &state)
{
    const QString text = Base58::encode(sample(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Base58::decode(text));
    }
}
BENCHMARK(base58Decode)->Arg(32)->Arg(64);

} // namespace
