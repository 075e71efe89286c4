// The list of wireless networks: split in the process, against one shell for each
// field of each line.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>

#include "core/os.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "goals.hpp"
#include "network/wireless_scan.hpp"

using namespace qvtc;

namespace {

std::string line_of(int number) {
    return "        Guest" + std::to_string(number) +
           " WiFi  Infra  6     130 Mbit/s  59      ▂▄▆_  WPA1 WPA2 \n";
}

std::string listing_of(int networks) {
    std::string listing = "IN-USE  SSID  MODE  CHAN  RATE  SIGNAL  BARS  SECURITY\n";
    for (int i = 0; i < networks; ++i) listing += line_of(i);
    return listing;
}

void list_networks(benchmark::State& state) {
    const std::string listing = listing_of(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(network::network_list_json(listing));
}

void split_line(benchmark::State& state) {
    const std::string line = line_of(1);
    for (auto _ : state) benchmark::DoNotOptimize(network::scan_fields(line, 64));
}

void split_line_by_shells(benchmark::State& state) {
    const std::string line = line_of(1);
    for (auto _ : state) {
        for (int field = 1; field <= 64; ++field) {
            const std::string text = os().capture(
                textf("echo \"%s\"|awk '{print $%d}'", shell::in_double(line).c_str(), field), 128);
            if (text.size() < 2) break;
        }
    }
}

BENCHMARK(list_networks)->Arg(50)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(split_line)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(split_line_by_shells)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

namespace qvtc::bench {

const std::vector<Goal>& network_goals() {
    // A bare shell takes about a millisecond, and is here on whatever machine.
    static const std::vector<Goal> goals = {
        {"a line's fields in the process / by one shell for each", "split_line/real_time",
         "split_line_by_shells/real_time", 1.0 / 1000},
        {"a list of 50 networks / one bare shell", "list_networks/50/real_time",
         "bare_spawn/0/real_time", 1.0},
    };
    return goals;
}

} // namespace qvtc::bench
