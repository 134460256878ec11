// vblur_bench [--quick] [options of Google Benchmark]
#include <fstream>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "bench/Cases.h"
#include "image/HvCpu.h"

namespace vblur::bench {

namespace {

std::string cpuModel() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);) {
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

bool takeQuick(int& argc, char** argv) {
  bool found = false;
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::string_view(argv[i]) == "--quick") {
      found = true;
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  return found;
}

void tellContext(const Plan& plan) {
  benchmark::AddCustomContext("cpu_model", cpuModel());
  benchmark::AddCustomContext("cpu_level", HvCpuLevel());
  benchmark::AddCustomContext("compiler", __VERSION__);
  benchmark::AddCustomContext("quick", plan.quick ? "yes" : "no");
#ifndef VBLUR_BENCH_OPENCV
  benchmark::AddCustomContext("OpenCV", "not installed");
#endif
#ifndef VBLUR_BENCH_LIBAVFILTER
  benchmark::AddCustomContext("libavfilter", "not installed");
#endif
}

void addAllCases(const Plan& plan) {
  addCopyCases(plan);
  addBlurCases(plan);
  addMixBackCases(plan);
  addThreadCases();
  addKernelCases(plan);
#ifdef VBLUR_BENCH_OPENCV
  addOpenCvCases(plan);
#endif
#ifdef VBLUR_BENCH_LIBAVFILTER
  addLibavfilterCases(plan);
#endif
}

}  // namespace

}  // namespace vblur::bench

int main(int argc, char** argv) {
  const vblur::bench::Plan plan{vblur::bench::takeQuick(argc, argv)};
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  vblur::bench::tellContext(plan);
  vblur::bench::addAllCases(plan);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
