// SPDX-License-Identifier: MIT
// performance_report FOLDER: from the CSV files of the benchmark programs in a folder, tables in FOLDER.md and drawings
// beside the files.
#include <ovks.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "report/figure.hpp"

namespace {

using report::Curve;
using Cells = std::vector<std::string>;

// The lines of a CSV file but the first, none where there is no file.
std::vector<Cells> lines(const std::filesystem::path& path) {
  std::vector<Cells> all;
  std::ifstream file(path);
  std::string line;
  for (bool first = true; std::getline(file, line); first = false) {
    if (first) continue;
    Cells cells;
    std::stringstream in(line);
    for (std::string cell; std::getline(in, cell, ',');) cells.push_back(cell);
    all.push_back(cells);
  }
  return all;
}

struct Measurement {
  std::string name;
  double elements;
  std::map<std::string, double> nanoseconds;  // of a call, by implementation

  double of(const std::string& by) const {
    const auto found = nanoseconds.find(by);
    return found == nanoseconds.end() ? 0 : found->second;
  }
  std::pair<std::string, double> bestPeer() const {
    std::pair<std::string, double> best = {"", 0};
    for (const auto& [by, ns] : nanoseconds) {
      if (by != "ovks" && by != "limit" && (best.second == 0 || ns < best.second)) best = {by, ns};
    }
    return best;
  }
};

std::vector<Measurement> measurements(const std::filesystem::path& csv) {
  std::vector<Measurement> all;
  for (const Cells& c : lines(csv)) {
    const double elements = std::stod(c[1]);
    auto found = std::find_if(all.begin(), all.end(),
                              [&](const Measurement& m) { return m.name == c[0] && m.elements == elements; });
    if (found == all.end()) found = all.insert(all.end(), {c[0], elements, {}});
    found->nanoseconds[c[2]] = std::stod(c[3]);
  }
  return all;
}

std::string format(const char* pattern, double v) {
  char cell[64];
  std::snprintf(cell, sizeof cell, pattern, v);
  return cell;
}

void table(std::ostream& md, const std::vector<Measurement>& all) {
  md << "| row | elements | ns an element | best peer | ratio | limit | ratio |\n|---|--:|--:|---|--:|--:|--:|\n";
  for (const Measurement& m : all) {
    const double ours = m.of("ovks"), limit = m.of("limit");
    if (ours == 0) continue;
    const auto [peer, ns] = m.bestPeer();
    md << "| " << m.name << " | " << format("%.0f", m.elements) << " | " << format("%.4g", ours / m.elements) << " | ";
    if (ns > 0) md << format("%.4g ", ns / m.elements) << peer << " | " << format("%.2f", ours / ns) << " | ";
    else md << "| | ";
    if (limit > 0) md << format("%.4g", limit / m.elements) << " | " << format("%.2f", ours / limit) << " |\n";
    else md << "| |\n";
  }
}

class Report {
 public:
  explicit Report(std::filesystem::path folder) : folder_(std::move(folder)), md_(folder_.string() + ".md") {}

  void opening() {
    std::ifstream info("/proc/cpuinfo");
    std::string line, processor = "?";
    while (std::getline(info, line))
      if (line.rfind("model name", 0) == 0) processor = line.substr(line.find(':') + 2);
    const LibraryVersion* version = ovksGetLibVersion();
    md_ << "# Performance\n\nMedians of repetitions, pinned to one core, ours and the peers' interleaved in one process. "
           "A ratio below 1 means that ours\nis faster. The limit is what the machine itself can do, measured in the same "
           "run: loads and stores of the same traffic, or\nas many multiply-adds. `./run bench "
        << folder_.generic_string() << "` makes this page, its drawings and the CSV files beside them.\n\n"
        << "| | |\n|---|---|\n| processor | " << processor << " |\n| library | " << version->Name << ' '
        << version->Version << " |\n| compiled by | " << OVKS_COMPILER << " |\n| flags | `" << OVKS_FLAGS
        << "` |\n| peers | " << OVKS_PEERS << " |\n";
  }

  void family(const std::string& name, const std::string& title) {
    const auto all = measurements(folder_ / (name + ".csv"));
    if (all.empty()) return;
    md_ << "\n## " << title << "\n\n";
    std::vector<report::Ratios> ratios;
    for (const Measurement& m : all) {
      const double ours = m.of("ovks"), peer = m.bestPeer().second, limit = m.of("limit");
      if (ours > 0 && (peer > 0 || limit > 0))
        ratios.push_back({m.name + ' ' + format("%.0f", m.elements), peer > 0 ? ours / peer : 0, limit > 0 ? ours / limit : 0});
    }
    figure(name, title + ": our time by others'", report::ratios(title + ": our time, divided by others'", ratios));
    if (name == "transform") throughput(all);
    if (name == "filter") taps();
    if (name == "sort") lengths();
    table(md_, all);
  }

 private:
  void figure(const std::string& name, const std::string& words, const std::string& svg) {
    std::ofstream(folder_ / (name + ".svg")) << svg;
    md_ << "![" << words << "](" << folder_.filename().generic_string() << '/' << name << ".svg)\n\n";
  }

  // 5 N log2 N operations of a complex transform, half as many of a real one.
  void throughput(const std::vector<Measurement>& all) {
    std::map<std::string, std::map<std::string, Curve>> byName;
    for (const Measurement& m : all) {
      const double flops = (m.name.find("CToC") == std::string::npos ? 2.5 : 5) * m.elements * std::log2(m.elements);
      for (const auto& [by, ns] : m.nanoseconds) {
        Curve& c = byName[m.name][by];
        c.name = by;
        c.x.push_back(m.elements);
        c.y.push_back(flops / ns);
      }
    }
    for (const auto& [name, curves] : byName) {
      std::vector<Curve> some;
      for (const auto& [by, curve] : curves) some.push_back(curve);
      std::reverse(some.begin(), some.end());
      figure(name, name, report::curves(name, {"points"}, {"GFLOP/s", false}, some));
    }
  }

  // Of blocks of 4096 samples.
  void taps() {
    std::vector<Curve> some = {{"automatic", {}, {}}, {"direct", {}, {}}, {"FFT", {}, {}}};
    for (const Cells& c : lines(folder_ / "filter_taps.csv")) {
      if (c[0] != "32f" || c[1] != "4096") continue;
      for (std::size_t i = 0; i < some.size(); ++i) {
        some[i].x.push_back(std::stod(c[2]));
        some[i].y.push_back(std::stod(c[3 + i]));
      }
    }
    if (some[0].x.empty()) return;
    std::rotate(some.begin(), some.begin() + 1, some.end());
    figure("filter_taps", "time against taps", report::curves("FIRSR_32f, blocks of 4096", {"taps"}, {"ns a sample"}, some));
  }

  void lengths() {
    std::map<std::string, Curve> byName;
    for (const Cells& c : lines(folder_ / "sort_lengths.csv")) {
      if (c[0].rfind("Sort_", 0) != 0) continue;
      Curve& curve = byName[c[0]];
      curve.name = c[0];
      curve.x.push_back(std::stod(c[1]));
      curve.y.push_back(std::stod(c[2]));
    }
    std::vector<Curve> some;
    for (const auto& [name, curve] : byName) some.push_back(curve);
    if (!some.empty())
      figure("sort_lengths", "time against length", report::curves("Sorting", {"elements"}, {"ns an element"}, some));
  }

  std::filesystem::path folder_;
  std::ofstream md_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return std::fputs("usage: performance_report FOLDER\n", stderr), 2;
  Report report(argv[1]);
  report.opening();
  report.family("vector", "Element-wise operations");
  report.family("stats", "Reductions");
  report.family("transform", "Fourier transforms");
  report.family("filter", "Filters and convolution");
  report.family("generate", "Windows and random numbers");
  report.family("sort", "Sorting");
  report.family("face", "The C++ interface over the C one");
}
