// Readers of settings. Names are service/implementation/entries.
#include <CommonAPI/attribute_map.h>
#include <benchmark/benchmark.h>
#include <strings.h>

#include <cstdlib>
#include <map>
#include <string>

namespace {

std::string Key(std::int64_t number) {
    return "setting number " + std::to_string(number);
}

template <class Map>
Map Filled(benchmark::State const& state, char const* value) {
    Map map;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        map[Key(i)] = value;
    return map;
}

template <class Value, class Default>
void Ours(benchmark::State& state, char const* text, Default fallback) {
    auto map = Filled<AttributeMap>(state, text);
    std::string const key = Key(state.range(0) / 2);
    Value value{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.loadMapVariable(key, value, fallback));
        benchmark::DoNotOptimize(value);
    }
}

template <class Convert>
void ByHand(benchmark::State& state, char const* text, Convert convert) {
    auto const map = Filled<std::map<std::string, std::string>>(state, text);
    std::string const key = Key(state.range(0) / 2);
    decltype(convert(text)) value{};
    for (auto _ : state) {
        auto const entry = map.find(key);
        if (entry != map.end())
            value = convert(entry->second.c_str());
        benchmark::DoNotOptimize(value);
    }
}

bool const registered = [] {
    using State = benchmark::State;
    auto const add = [](char const* name, auto body) {
        benchmark::RegisterBenchmark(name, body)->Arg(8)->Arg(1000);
    };
    add("load int/ours", [](State& state) { Ours<int>(state, "12345", 7); });
    add("load int/find + atoi", [](State& state) {
        ByHand(state, "12345", [](char const* text) { return std::atoi(text); });
    });
    add("load bool/ours", [](State& state) { Ours<bool>(state, "True", false); });
    add("load bool/find + strcasecmp", [](State& state) {
        ByHand(state, "True", [](char const* text) { return strcasecmp(text, "True") == 0; });
    });
    add("load text/ours",
        [](State& state) { Ours<std::string>(state, "a text of 24 characters.", ""); });
    add("load text/find + copy", [](State& state) {
        ByHand(state, "a text of 24 characters.",
               [](char const* text) { return std::string(text); });
    });
    return true;
}();

}  // namespace
