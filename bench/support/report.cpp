// SPDX-License-Identifier: MIT
#include "support/report.hpp"

#include <benchmark/benchmark.h>
#include <sched.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <vector>

namespace bench {
namespace {

struct Row {
  std::string name;
  std::int64_t elements;
  std::map<std::string, double> nanoseconds;  // a call's median, by implementation
};

std::vector<Row>& rows() {
  static std::vector<Row> all;
  return all;
}

Row& row(const std::string& name, std::int64_t elements) {
  for (Row& r : rows()) {
    if (r.name == name && r.elements == elements) return r;
  }
  return rows().emplace_back(Row{name, elements, {}});
}

class MedianReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      const std::string& name = run.run_name.function_name;
      const std::size_t size = name.rfind('/'), by = name.rfind('/', size - 1);
      row(name.substr(0, by), std::stoll(name.substr(size + 1))).nanoseconds[name.substr(by + 1, size - by - 1)] =
          run.GetAdjustedRealTime();
    }
  }
};

const std::pair<const std::string, double>* bestPeer(const Row& r) {
  const std::pair<const std::string, double>* best = nullptr;
  for (const auto& entry : r.nanoseconds) {
    if (entry.first == "ovks" || entry.first == "limit") continue;
    if (!best || entry.second < best->second) best = &entry;
  }
  return best;
}

void print() {
  std::printf("%-28s %9s %12s %9s %12s %7s %12s %7s\n", "row", "elements", "ns/element", "ns/call", "best peer",
              "ratio", "limit", "ratio");
  for (const Row& r : rows()) {
    const auto ours = r.nanoseconds.find("ovks");
    if (ours == r.nanoseconds.end()) continue;
    const double n = static_cast<double>(r.elements);
    std::printf("%-28s %9lld %12.5f %9.1f", r.name.c_str(), static_cast<long long>(r.elements), ours->second / n,
                ours->second);
    if (const auto* peer = bestPeer(r)) {
      std::printf(" %12.5f %7.2f", peer->second / n, ours->second / peer->second);
      std::printf(" (%s)", peer->first.c_str());
    }
    const auto limit = r.nanoseconds.find("limit");
    if (limit != r.nanoseconds.end()) std::printf(" %12.5f %7.2f", limit->second / n, ours->second / limit->second);
    std::printf("\n");
  }
}

void write(const std::string& path) {
  std::ofstream csv(path);
  csv << "row,elements,by,ns_per_call\n";
  for (const Row& r : rows()) {
    for (const auto& [by, ns] : r.nanoseconds) csv << r.name << ',' << r.elements << ',' << by << ',' << ns << '\n';
  }
}

void pin() {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(sched_getcpu(), &set);
  sched_setaffinity(0, sizeof set, &set);
}

}  // namespace

void add(const std::string& name, std::int64_t elements, const std::string& by, std::function<void()> call) {
  row(name, elements);
  const std::string full = name + '/' + by + '/' + std::to_string(elements);
  benchmark::RegisterBenchmark(full.c_str(), [call = std::move(call)](benchmark::State& state) {
    for (auto _ : state) {
      call();
      benchmark::ClobberMemory();
    }
  });
}

int run(int argc, char** argv) {
  std::string csv;
  std::vector<std::string> words = {argv[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.01",
                                    "--benchmark_enable_random_interleaving=true"};
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.rfind("--csv=", 0) == 0) csv = word.substr(6);
    else words.push_back(word);
  }
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  pin();
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  print();
  if (!csv.empty()) write(csv);
  return 0;
}

}  // namespace bench
