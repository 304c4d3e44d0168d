#include "bench/ratioReporter.h"
#include "support/text/chString.h"

#include <QString>
#include <cstdarg>
#include <string>

namespace {

constexpr char shortText[] = "sipAccount3.cfg";
constexpr char longText[] = "/rundata/config/user/voip/sipAccount3.cfg and what belongs to it";

template <class TEXT>
TEXT make(const char* text)
{
    return TEXT(text);
}

template <>
QString make<QString>(const char* text)
{
    return QString::fromUtf8(text);
}

template <class TEXT>
void copy(benchmark::State& state)
{
    const TEXT text = make<TEXT>(longText);
    for (auto _ : state) {
        TEXT other(text);
        benchmark::DoNotOptimize(other);
    }
}

template <class TEXT>
void assign(benchmark::State& state)
{
    const TEXT first = make<TEXT>(longText), second = make<TEXT>(shortText);
    TEXT other;
    for (auto _ : state) {
        other = first;
        benchmark::DoNotOptimize(other);
        other = second;
        benchmark::DoNotOptimize(other);
    }
}

template <class TEXT>
void construct(benchmark::State& state)
{
    const char* text = longText;
    benchmark::DoNotOptimize(text);
    for (auto _ : state) {
        TEXT made = make<TEXT>(text);
        benchmark::DoNotOptimize(made);
    }
}

template <class TEXT>
void compare(benchmark::State& state)
{
    const TEXT first = make<TEXT>(longText), second = make<TEXT>(longText);
    for (auto _ : state) {
        bool same = first == second;
        benchmark::DoNotOptimize(same);
    }
}

template <class TEXT>
void append(benchmark::State& state)
{
    const TEXT part = make<TEXT>(shortText);
    for (auto _ : state) {
        TEXT text;
        for (int i = 0; i < 20; ++i)
            text += part;
        benchmark::DoNotOptimize(text);
    }
}

// What one writes without a string class that formats: measure, make room, print.
std::string snprintfString(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
std::string snprintfString(const char* fmt, ...)
{
    va_list args, again;
    va_start(args, fmt);
    va_copy(again, args);
    std::string text(static_cast<size_t>(vsnprintf(nullptr, 0, fmt, again)), '\0');
    va_end(again);
    vsnprintf(text.data(), text.size() + 1, fmt, args);
    va_end(args);
    return text;
}

// The same with a guess of the room that is always right here: the best that can be had.
std::string snprintfBuffer(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
std::string snprintfBuffer(const char* fmt, ...)
{
    char buffer[256];
    va_list args;
    va_start(args, fmt);
    const int length = vsnprintf(buffer, sizeof(buffer), fmt, args);
    va_end(args);
    return std::string(buffer, static_cast<size_t>(length));
}

template <class PRINT>
void printName(benchmark::State& state, PRINT print)
{
    int account = 3;
    for (auto _ : state) {
        benchmark::DoNotOptimize(account);
        auto text = print("/rundata/config/user/voip/sipAccount%d.cfg", account);
        benchmark::DoNotOptimize(text);
    }
}

template <class PRINT>
void printText(benchmark::State& state, PRINT print)
{
    const char* name = shortText;
    for (auto _ : state) {
        benchmark::DoNotOptimize(name);
        auto text = print("%s.ing", name);
        benchmark::DoNotOptimize(text);
    }
}

template <class PRINT>
void printTime(benchmark::State& state, PRINT print)
{
    int number = 7;
    for (auto _ : state) {
        benchmark::DoNotOptimize(number);
        auto text = print("%04d-%02d-%02d %02d:%02d:%02d", 2024, number, number, number, number, number);
        benchmark::DoNotOptimize(text);
    }
}

template <class PRINT>
void printFloat(benchmark::State& state, PRINT print)
{
    double number = 1234.5678;
    for (auto _ : state) {
        benchmark::DoNotOptimize(number);
        auto text = print("%.2f", number);
        benchmark::DoNotOptimize(text);
    }
}

const auto ours = [](auto... args) { return fmtString(args...); };
const auto theirs = [](auto... args) { return snprintfString(args...); };
const auto buffered = [](auto... args) { return snprintfBuffer(args...); };

template <class TEXT>
void registerFor(const std::string& name)
{
    benchmark::RegisterBenchmark(("copy " + name).c_str(), copy<TEXT>);
    benchmark::RegisterBenchmark(("assign " + name).c_str(), assign<TEXT>);
    benchmark::RegisterBenchmark(("construct " + name).c_str(), construct<TEXT>);
    benchmark::RegisterBenchmark(("compare " + name).c_str(), compare<TEXT>);
    benchmark::RegisterBenchmark(("append " + name).c_str(), append<TEXT>);
}

template <class PRINT>
void registerPrint(const std::string& name, PRINT print)
{
    const auto with = [print](auto function) {
        return [print, function](benchmark::State& state) { function(state, print); };
    };
    benchmark::RegisterBenchmark(("name " + name).c_str(), with(printName<PRINT>));
    benchmark::RegisterBenchmark(("text " + name).c_str(), with(printText<PRINT>));
    benchmark::RegisterBenchmark(("time " + name).c_str(), with(printTime<PRINT>));
    benchmark::RegisterBenchmark(("float " + name).c_str(), with(printFloat<PRINT>));
}

} // namespace

int main(int argc, char** argv)
{
    registerFor<chString>("chString");
    registerFor<QString>("QString");
    registerFor<std::string>("std::string");
    registerPrint("Format", ours);
    registerPrint("snprintf", theirs);
    registerPrint("buffer", buffered);
    return runWithRatios(
        argc, argv,
        {
            {"copy against QString", "copy chString", "copy QString", 1.0},
            {"copy against std::string", "copy chString", "copy std::string", 1.0},
            {"assign against QString", "assign chString", "assign QString", 1.0},
            {"construct against QString", "construct chString", "construct QString", 1.0},
            {"construct against std::string", "construct chString", "construct std::string", 0},
            {"compare against std::string", "compare chString", "compare std::string", 0},
            {"append 20 against QString", "append chString", "append QString", 0},
            {"append 20 against std::string", "append chString", "append std::string", 0},
            {"Format of a path against snprintf", "name Format", "name snprintf", 1.5},
            {"Format of a text against snprintf", "text Format", "text snprintf", 1.5},
            {"Format of a time against snprintf", "time Format", "time snprintf", 1.5},
            {"Format of a float against snprintf", "float Format", "float snprintf", 1.5},
            {"Format of a path against a buffer", "name Format", "name buffer", 1.5},
            {"Format of a text against a buffer", "text Format", "text buffer", 1.5},
            {"Format of a time against a buffer", "time Format", "time buffer", 1.5},
            {"Format of a float against a buffer", "float Format", "float buffer", 1.5},
        });
}
