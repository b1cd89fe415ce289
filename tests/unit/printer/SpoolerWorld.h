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

  // Calls answers the transcript of the spooler's calls since the last time, one line for each.
  std::vector<std::string> Calls();

  // Job answers the bytes of the job with that number, counted from 1.
  std::string Job(int number) const;

  // TraceTexts answers the trace lines since the last time, as "level text".
  std::vector<std::string> TraceTexts();

 private:
  TempFolder folder_;
  std::size_t callsSeen_ = 0;
  std::size_t tracesSeen_ = 0;
};

}  // namespace zt
