#pragma once

#include "Clock.h"
#include "Handle.h"

namespace zt {

// ZOLTInstanceHandler is the sign, for the whole machine, that an agent is running: a named mutex that nobody waits for
// or owns. Whether another process had it already is decided once, when the object is made, and never looked at again.
class ZOLTInstanceHandler {
 public:
  ZOLTInstanceHandler();

  bool AlreadyRunning() const { return creationError_ == ERROR_ALREADY_EXISTS; }

  // IsAnyRunning reports whether any agent has the sign out now, this one included.
  static bool IsAnyRunning();

  // Release takes the sign away, for a start that is no run of the agent and may stay for hours.
  void Release() { mutex_.Reset(); }

  // WaitForPrevious waits while another instance is running: one second for each of `attempts`. Since the state is not
  // looked at again, on purpose, it always waits all of them or not at all. Answers whether there was nothing to wait
  // for.
  bool WaitForPrevious(int attempts, const Pause& pause) const;

 private:
  KernelHandle mutex_;
  DWORD creationError_;
};

// instanceHandler is made before the program's entry runs and lives as long as the process.
extern ZOLTInstanceHandler instanceHandler;

}  // namespace zt
