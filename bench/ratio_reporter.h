// A console reporter that also prints, at the end, the speed of our routines relative to the
// alternatives they were run against in the same program.
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
    comparisons_.push_back({std::move(label), std::move(ours), std::move(theirs), goal});
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      const std::string name = run.run_name.str();
      // With repetitions the median stands for the benchmark; without, the single run.
      if (run.run_type == Run::RT_Aggregate) {
        if (run.aggregate_name == "median") medians_[name] = Seconds(run);
      } else {
        single_[name] = Seconds(run);
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\n%-52s %12s %12s %9s %6s\n", "comparison (ours vs theirs, CPU time)", "ours/iter",
                "theirs/iter", "speed", "goal");
    int met = 0, total = 0;
    for (const Comparison& c : comparisons_) {
      const double ours = Lookup(c.ours), theirs = Lookup(c.theirs);
      if (ours <= 0 || theirs <= 0) continue;
      const double ratio = theirs / ours;
      ++total;
      const bool ok = ratio >= c.goal;
      met += ok ? 1 : 0;
      std::printf("%-52s %12s %12s %8.2fx %5.2fx %s\n", c.label.c_str(), Format(ours).c_str(),
                  Format(theirs).c_str(), ratio, c.goal, ok ? "met" : "NOT MET");
    }
    std::printf("goals met: %d of %d\n", met, total);
    std::fflush(stdout);
  }

 private:
  struct Comparison {
    std::string label, ours, theirs;
    double goal;
  };

  static double Seconds(const Run& run) {
    const double perIteration = run.GetAdjustedCPUTime();
    return perIteration / benchmark::GetTimeUnitMultiplier(run.time_unit);
  }

  double Lookup(const std::string& name) const {
    if (auto it = medians_.find(name); it != medians_.end()) return it->second;
    if (auto it = single_.find(name); it != single_.end()) return it->second;
    return -1;
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
  std::map<std::string, double> medians_, single_;
};

}  // namespace ic::bench
