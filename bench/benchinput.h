#pragma once

#include "generator.h"

#include <benchmark/benchmark.h>

namespace benchdata {

// Every benchmark over an input reports its bytes and names it.
inline void finish(benchmark::State& state, Input which)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * input(which).size());
    state.SetLabel(inputName(which));
}

} // namespace benchdata
