// The settings document: one load and one save for what touches many keys.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <json-c/json.h>
#include <map>
#include <string>
#include <string_view>
#include <unistd.h>

#include "connections/exports.hpp"
#include "connections/fields.hpp"
#include "connections/list.hpp"
#include "connections/types.hpp"
#include "core/paths.hpp"
#include "goals.hpp"
#include "store/document.hpp"
#include "store/exports.hpp"

using namespace qvtc;

namespace {

constexpr unsigned type = connections::type_number::spice;

/// What a front-end stores in the fields of a usual record; the others hold
/// switches.
const std::map<std::string_view, std::string> texts = {
    {"type", "2"},
    {"name", "accounting"},
    {"serverAddress", "desktops.example.net"},
    {"port", "5930"},
    {"password", "c2VjcmV0LXBhc3N3b3Jk"},
    {"username", "front.desk"},
    {"domain", "EXAMPLE"},
    {"colorDepth", "32"},
    {"monitorSelect", "extend"},
};

std::string value_of(std::string_view field) {
    const auto found = texts.find(field);
    return found == texts.end() ? "off" : found->second;
}

std::string record_params(unsigned id) {
    std::string params = "id=" + std::to_string(id);
    for (const char* const field : connections::field_names) {
        if (std::string_view(field) != "id")
            params.append("&").append(field).append("=").append(value_of(field));
    }
    return params;
}

/// Puts the document on the disk that the environment names: a link stays a
/// link, so all that follows goes to its target.
void use_disk() {
    const char* const disk = std::getenv("QVTC_BENCH_DISK");
    if (disk == nullptr) return;
    unlink(paths::settings_document);
    const std::string target = std::string(disk) + "/vpclientData.xml";
    if (symlink(target.c_str(), paths::settings_document) != 0) std::abort();
}

/// A document of `records` records in the block of the type.
void fill_document(unsigned records) {
    use_disk();
    store::change_document([&](store::Document& document) {
        for (unsigned slot = 0; slot < connections::ids_per_type; ++slot) {
            document.remove_item(
                connections::item_name(connections::prefix_of(type), type * 32 + slot));
        }
        return document.set("configItem", "tc_config_param_8", "en_US");
    });
    for (unsigned slot = 0; slot < records; ++slot)
        connections::store_connection(type, record_params(type * 32 + slot));
}

void read_one_key(benchmark::State& state) {
    fill_document(32);
    char value[128];
    for (auto _ : state)
        benchmark::DoNotOptimize(xmlread("configItem", "tc_config_param_8", value));
}

void write_one_key(benchmark::State& state) {
    fill_document(32);
    for (auto _ : state) {
        char value[] = "de_DE";
        benchmark::DoNotOptimize(xmlwrite("configItem", "tc_config_param_8", value));
    }
}

/// A save of the document as it is, and nothing else.
void save_durably(benchmark::State& state) {
    fill_document(static_cast<unsigned>(state.range(0)));
    const store::Document document = store::Document::load();
    for (auto _ : state) benchmark::DoNotOptimize(document.save());
}

void add_record(benchmark::State& state) {
    fill_document(static_cast<unsigned>(state.range(0)));
    const auto slot = static_cast<unsigned>(state.range(0)) - 1;
    std::string params = record_params(type * 32 + slot);
    for (auto _ : state) {
        state.PauseTiming();
        delconnection(type, slot);
        state.ResumeTiming();
        setconnections(type, params.data());
    }
}

void add_record_by_single_writes(benchmark::State& state) {
    fill_document(static_cast<unsigned>(state.range(0)));
    const auto slot = static_cast<unsigned>(state.range(0)) - 1;
    const std::string item = connections::item_name(connections::prefix_of(type), type * 32 + slot);
    for (auto _ : state) {
        state.PauseTiming();
        delconnection(type, slot);
        state.ResumeTiming();
        for (const char* const field : connections::field_names) {
            std::string value = value_of(field);
            xmlwrite(item.c_str(), field, value.data());
        }
    }
}

void list_32_records(benchmark::State& state) {
    fill_document(32);
    for (auto _ : state) json_object_put(getconnections(type));
}

void list_32_records_by_single_reads(benchmark::State& state) {
    fill_document(32);
    for (auto _ : state) {
        json_object* const list = json_object_new_array();
        for (unsigned id = type * 32; id < type * 32 + 32; ++id) {
            const std::string item = connections::item_name(connections::prefix_of(type), id);
            json_object* const record = json_object_new_object();
            char value[128] = "";
            if (xmlread(item.c_str(), "id", value) != 0) std::abort();
            for (const char* const field : connections::field_names) {
                value[0] = '\0';
                xmlread(item.c_str(), field, value);
                json_object_object_add(record, field, json_object_new_string(value));
            }
            json_object_array_add(list, record);
        }
        json_object_put(list);
    }
}

BENCHMARK(read_one_key)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(write_one_key)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(save_durably)->Arg(4)->Arg(32)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(add_record)->Arg(4)->Arg(32)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(add_record_by_single_writes)
    ->Arg(4)
    ->Arg(32)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK(list_32_records)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(list_32_records_by_single_reads)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

namespace qvtc::bench {

const std::vector<Goal>& settings_goals() {
    static const std::vector<Goal> goals = {
        {"listing 32 records / reading their keys one by one", "list_32_records/real_time",
         "list_32_records_by_single_reads/real_time", 1.0 / 1000},
        {"adding a 4th record / a save with no load", "add_record/4/real_time",
         "save_durably/4/real_time", 0},
        {"adding a 32nd record / one key written", "add_record/32/real_time",
         "write_one_key/real_time", 1.2},
        {"adding a 32nd record / a save with no load", "add_record/32/real_time",
         "save_durably/32/real_time", 0},
        {"adding a 4th record / 51 single writes", "add_record/4/real_time",
         "add_record_by_single_writes/4/real_time", 1.0 / 30},
        {"adding a 32nd record / 51 single writes", "add_record/32/real_time",
         "add_record_by_single_writes/32/real_time", 1.0 / 30},
    };
    return goals;
}

} // namespace qvtc::bench
