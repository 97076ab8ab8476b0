// A console reporter that also prints, at the end, the speed of our routines relative to the
// alternatives they were run against in the same program, with the bytes per second of each side
// (from SetBytesProcessed) so that the figures can be set against the memory's bandwidth.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ic::bench {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  /// After the runs, prints how many times faster `ours` ran than `theirs` (the ratio of their
  /// CPU time per iteration to ours: both do the same work per iteration, in one thread, so CPU
  /// time is what the work cost even while other programs share the processor), against `goal`.
  void Compare(std::string label, std::string ours, std::string theirs, double goal) {
    comparisons_.push_back({std::move(label), std::move(ours), std::move(theirs), goal, false});
  }

  /// As Compare, but the ratio is of bytes per second (ours over theirs): for two runs that
  /// process different bytes for the same work, such as one text in UTF-8 and in UTF-16.
  void CompareRates(std::string label, std::string ours, std::string theirs, double goal) {
    comparisons_.push_back({std::move(label), std::move(ours), std::move(theirs), goal, true});
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      const std::string name = run.run_name.str();
      // With repetitions the median stands for the benchmark; without, the single run.
      if (run.run_type == Run::RT_Aggregate) {
        if (run.aggregate_name == "median") medians_[name] = Measure(run);
      } else {
        single_[name] = Measure(run);
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\n%-52s %12s %12s %11s %11s %9s %6s\n",
                "comparison (ours vs theirs, CPU time; B/s: rate)", "ours/iter", "theirs/iter",
                "ours B/s", "theirs B/s", "speed", "goal");
    int met = 0, total = 0;
    for (const Comparison& c : comparisons_) {
      const Measured ours = Lookup(c.ours), theirs = Lookup(c.theirs);
      if (ours.seconds <= 0 || theirs.seconds <= 0) continue;
      if (c.byRate && (ours.bytesPerSecond <= 0 || theirs.bytesPerSecond <= 0)) continue;
      const double ratio =
          c.byRate ? ours.bytesPerSecond / theirs.bytesPerSecond : theirs.seconds / ours.seconds;
      ++total;
      const bool ok = ratio >= c.goal;
      met += ok ? 1 : 0;
      std::printf("%-52s %12s %12s %11s %11s %8.2fx %5.2fx %s\n", c.label.c_str(),
                  Format(ours.seconds).c_str(), Format(theirs.seconds).c_str(),
                  FormatRate(ours.bytesPerSecond).c_str(),
                  FormatRate(theirs.bytesPerSecond).c_str(), ratio, c.goal, ok ? "met" : "NOT MET");
    }
    std::printf("goals met: %d of %d\n", met, total);
    std::fflush(stdout);
  }

 private:
  struct Comparison {
    std::string label, ours, theirs;
    double goal;
    bool byRate;  // the ratio is of bytes per second, not of time
  };

  // CPU seconds per iteration and bytes per second (0 when the benchmark counts no bytes).
  struct Measured {
    double seconds = -1;
    double bytesPerSecond = 0;
  };

  static Measured Measure(const Run& run) {
    Measured m;
    m.seconds = run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    if (auto it = run.counters.find("bytes_per_second"); it != run.counters.end())
      m.bytesPerSecond = it->second.value;
    return m;
  }

  Measured Lookup(const std::string& name) const {
    if (auto it = medians_.find(name); it != medians_.end()) return it->second;
    if (auto it = single_.find(name); it != single_.end()) return it->second;
    return {};
  }

  static std::string FormatRate(double bytesPerSecond) {
    if (bytesPerSecond <= 0) return "-";
    char text[32];
    if (bytesPerSecond >= 1e9)
      std::snprintf(text, sizeof text, "%.2f GB/s", bytesPerSecond * 1e-9);
    else if (bytesPerSecond >= 1e6)
      std::snprintf(text, sizeof text, "%.1f MB/s", bytesPerSecond * 1e-6);
    else
      std::snprintf(text, sizeof text, "%.1f kB/s", bytesPerSecond * 1e-3);
    return text;
  }

  static std::string Format(double seconds) {
    char text[32];
    if (seconds >= 1e-3)
      std::snprintf(text, sizeof text, "%.3f ms", seconds * 1e3);
    else if (seconds >= 1e-6)
      std::snprintf(text, sizeof text, "%.3f us", seconds * 1e6);
    else
      std::snprintf(text, sizeof text, "%.2f ns", seconds * 1e9);
    return text;
  }

  std::vector<Comparison> comparisons_;
  std::map<std::string, Measured> medians_, single_;
};

}  // namespace ic::bench
