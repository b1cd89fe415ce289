#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TempFolder.h"

namespace zt {

// SpoolerWorld is the simulated spooler and Function Discovery of this test program, with one script for all of its
// tests: both libraries lie beside the program.
class SpoolerWorld {
 public:
  SpoolerWorld(std::string_view spoolScript, std::string_view discoveryScript);

  // Calls returns the transcript of the spooler's calls since the last time, one line for each.
  std::vector<std::string> Calls();

  // Job returns the bytes of the job with that number, counted from 1.
  std::string Job(int number) const { return folder_.Read(L"job-" + std::to_wstring(number) + L".raw"); }

 private:
  TempFolder folder_;
  std::size_t callsSeen_ = 0;
};

}  // namespace zt
