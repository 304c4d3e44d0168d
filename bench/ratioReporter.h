#pragma once

#include <benchmark/benchmark.h>
#include <initializer_list>

// Two benchmarks of one run, named as they were registered.
struct ratioPair
{
    const char* what;
    const char* ours;
    const char* theirs;
    double target; // the most that ours may take as a share of theirs, 0 when it is only of interest
};

// The main() of a benchmark program: runs what is registered, each several times in turns, and prints
// a table of the ratios of the fastest runs. With "--strict" a ratio over its target makes the exit
// status 1. The other arguments are those of the benchmark library.
int runWithRatios(int argc, char** argv, std::initializer_list<ratioPair> pairs);
