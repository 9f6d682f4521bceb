#pragma once
// What every benchmark shares: its arguments ([ROUNDS] [RESULT_FILE]), timing, medians, and the
// report, printed and also written to the result file (a GUI program's output may not reach the
// console under Wine).
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double Millis(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

template <typename F>
double Millis(F&& f) {
  const auto start = Clock::now();
  f();
  return Millis(start, Clock::now());
}

inline double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v.empty() ? 0 : v[v.size() / 2];
}

inline double Ratio(double a, double b) { return b > 0 ? a / b : 0.0; }

struct Args {
  int rounds;
  std::string resultFile;
};

// From the C runtime's argument list, which WinMain and main programs both have.
inline Args ReadArgs(int defaultRounds, int maxRounds = 100000) {
  Args args{defaultRounds, ""};
  if (__argc > 1) args.rounds = std::clamp(std::atoi(__argv[1]), 1, maxRounds);
  if (__argc > 2) args.resultFile = __argv[2];
  return args;
}

inline void Report(const std::string& text, const Args& args) {
  std::fputs(text.c_str(), stdout);
  std::fflush(stdout);
  if (args.resultFile.empty()) return;
  if (FILE* f = std::fopen(args.resultFile.c_str(), "w")) {
    std::fputs(text.c_str(), f);
    std::fclose(f);
  }
}

}  // namespace bench
