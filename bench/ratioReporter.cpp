#include "bench/ratioReporter.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

// Prints as usual and keeps the least processor time of each benchmark.
class ratioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                Keep(run);
        ConsoleReporter::ReportRuns(runs);
    }

    // Nanoseconds, or 0 when the benchmark did not run.
    double Time(const std::string& name) const
    {
        const auto found = m_times.find(name);
        return found == m_times.end() ? 0 : found->second;
    }

private:
    void Keep(const Run& run)
    {
        std::string name = run.run_name.function_name;
        if (!run.run_name.args.empty())
            name += "/" + run.run_name.args;
        const double time = run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
        const auto [place, isNew] = m_times.emplace(name, time);
        if (!isNew && time < place->second)
            place->second = time;
    }

    std::map<std::string, double> m_times;
};

const char* verdict(const ratioPair& pair, double ratio)
{
    if (pair.target <= 0)
        return "";
    return ratio <= pair.target ? "ok" : "over";
}

// The pairs that are over their targets.
int printTable(const ratioReporter& reporter, std::initializer_list<ratioPair> pairs)
{
    int over = 0;
    printf("\n%-44s %12s %12s %7s %7s\n", "what", "ours ns", "theirs ns", "ratio", "target");
    for (const ratioPair& pair : pairs) {
        const double ours = reporter.Time(pair.ours), theirs = reporter.Time(pair.theirs);
        if (ours <= 0 || theirs <= 0)
            continue;
        const double ratio = ours / theirs;
        over += pair.target > 0 && ratio > pair.target;
        char target[16] = "-";
        if (pair.target > 0)
            snprintf(target, sizeof(target), "%.2f", pair.target);
        printf("%-44s %12.1f %12.1f %7.2f %7s %s\n", pair.what, ours, theirs, ratio, target,
               verdict(pair, ratio));
    }
    return over;
}

} // namespace

int runWithRatios(int argc, char** argv, std::initializer_list<ratioPair> pairs)
{
    bool strict = false;
    std::vector<std::string> arguments = {argv[0], "--benchmark_repetitions=5",
                                          "--benchmark_enable_random_interleaving=true",
                                          "--benchmark_min_time=0.05"};
    for (int i = 1; i < argc; ++i) {
        const bool isStrict = std::string(argv[i]) == "--strict";
        strict = strict || isStrict;
        if (!isStrict)
            arguments.emplace_back(argv[i]);
    }
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data()))
        return 2;
    ratioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return printTable(reporter, pairs) > 0 && strict ? 1 : 0;
}
