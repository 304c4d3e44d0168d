#include "bench/ratioReporter.h"
#include "support/container/chArray.h"
#include "support/container/chList.h"
#include "support/text/chString.h"

#include <list>
#include <string>
#include <vector>

namespace {

template <class LIST>
void appendInts(benchmark::State& state)
{
    for (auto _ : state) {
        LIST list;
        for (int i = 0; i < state.range(0); ++i)
            list.push_back(i);
        benchmark::DoNotOptimize(list);
    }
}

template <class LIST>
void appendTexts(benchmark::State& state)
{
    const typename LIST::value_type text("/rundata/config/user/voip/sipAccount3.cfg");
    for (auto _ : state) {
        LIST list;
        for (int i = 0; i < state.range(0); ++i)
            list.push_back(text);
        benchmark::DoNotOptimize(list);
    }
}

template <class LIST>
void walk(benchmark::State& state)
{
    LIST list;
    for (int i = 0; i < state.range(0); ++i)
        list.push_back(i);
    for (auto _ : state) {
        int sum = 0;
        for (int value : list)
            sum += value;
        benchmark::DoNotOptimize(sum);
    }
}

// A list that stays short while values come and go.
template <class LIST>
void queue(benchmark::State& state)
{
    LIST list;
    for (int i = 0; i < 8; ++i)
        list.push_back(i);
    for (auto _ : state) {
        list.push_back(1);
        list.pop_front();
        benchmark::DoNotOptimize(list);
    }
}

void readArray(benchmark::State& state)
{
    chObjArray<int, true, 4> array;
    array.SetArraySize(1000);
    for (auto _ : state) {
        int sum = 0;
        for (int i = 0; i < array.GetSize(); ++i)
            sum += array[i];
        benchmark::DoNotOptimize(sum);
    }
}

void readVector(benchmark::State& state)
{
    const std::vector<int> array(1000);
    for (auto _ : state) {
        int sum = 0;
        for (size_t i = 0; i < array.size(); ++i)
            sum += array.at(i);
        benchmark::DoNotOptimize(sum);
    }
}

template <class LIST>
void registerFor(const std::string& name)
{
    benchmark::RegisterBenchmark(("append " + name).c_str(), appendInts<LIST>)->Arg(4)->Arg(16)->Arg(1000);
    benchmark::RegisterBenchmark(("walk " + name).c_str(), walk<LIST>)->Arg(1000);
    benchmark::RegisterBenchmark(("queue " + name).c_str(), queue<LIST>);
}

} // namespace

int main(int argc, char** argv)
{
    registerFor<chObjList_dynamic<int, 16>>("chObjList");
    registerFor<std::list<int>>("std::list");
    benchmark::RegisterBenchmark("texts chObjList", appendTexts<chObjList_dynamic<chString, 16>>)->Arg(100);
    benchmark::RegisterBenchmark("texts std::list", appendTexts<std::list<std::string>>)->Arg(100);
    benchmark::RegisterBenchmark("read chObjArray", readArray);
    benchmark::RegisterBenchmark("read std::vector", readVector);
    return runWithRatios(
        argc, argv,
        {
            {"append 4 against std::list", "append chObjList/4", "append std::list/4", 1.0},
            {"append 16 against std::list", "append chObjList/16", "append std::list/16", 1.0},
            {"append 1000 against std::list", "append chObjList/1000", "append std::list/1000", 1.0},
            {"append 100 texts against std::list", "texts chObjList/100", "texts std::list/100", 1.0},
            {"walk 1000 against std::list", "walk chObjList/1000", "walk std::list/1000", 0},
            {"append and remove against std::list", "queue chObjList", "queue std::list", 1.0},
            {"checked read of 1000 against std::vector", "read chObjArray", "read std::vector", 0},
        });
}
