#pragma once

#include <cstdint>
#include <string_view>

#include "ServerPolicy.h"
#include "TimeText.h"

namespace zt {

// IZOLTSkipChecker answers from the local history whether work was done, or failed, so recently that it is not to be
// repeated, and records what happened. `id` keys the history of one printer. Days are whole days. The operations on
// normal reports and IsTonerLifeExceeded have no caller in this program; they are part of the interface.
class IZOLTSkipChecker {
 public:
  virtual ~IZOLTSkipChecker() = default;

  virtual bool IsLastIOFailNear(std::string_view id) = 0;                       // within 7 days
  virtual bool IsLastSendNear(std::string_view id, OptionalTimeText time) = 0;  // within the send interval
  virtual bool IsLastServerFailNear() = 0;                                      // within 7 days
  virtual void RecordIOFail(std::string_view id) = 0;
  virtual void RecordServerFail() = 0;
  virtual void RecordSendSuccess(std::string_view id, OptionalTimeText time) = 0;  // an empty text records nothing

  // SetSendInterval and SetPPNormalInterval store the days only where they differ from those in force.
  virtual void SetSendInterval(int days) = 0;
  virtual void SetPPNormalInterval(int days) = 0;

  virtual void SetZOLTEnabled(bool enabled) = 0;
  virtual bool GetZOLTEnabled(bool& enabled) = 0;  // false, output untouched, when it was never set
  virtual void SetPPAEnabled(bool enabled) = 0;
  virtual bool GetPPAEnabled(bool& enabled) = 0;  // as GetZOLTEnabled

  virtual bool IsLastPPSendNear(std::string_view id, OptionalTimeText time) = 0;    // within the transmission duration
  virtual void RecordPPSend(std::string_view id, OptionalTimeText time) = 0;        // an empty text records nothing
  virtual bool IsLastPPNormalNear(std::string_view id, OptionalTimeText time) = 0;  // within the normal interval
  virtual void RecordPPNormal(std::string_view id, OptionalTimeText time) = 0;      // an empty text records nothing

  // GetServerPolicy returns whether the server has given a policy; the output is that policy, or else the defaults.
  virtual bool GetServerPolicy(ServerPolicy& policy) = 0;
  virtual void StoreServerPolicy(const ServerPolicy& policy) = 0;

  virtual void RecordTonerLife(std::string_view id, std::uint32_t life) = 0;

  // UpdateTonerChangeCount stores the count; false when it is the stored one already.
  virtual bool UpdateTonerChangeCount(std::string_view id, std::uint32_t count) = 0;

  virtual int GetSendInterval(int fallback) = 0;
  virtual int GetPPNormalInterval(int fallback) = 0;

  // IsTonerLifeExceeded reports whether the recorded toner life is above the limit of the policy.
  virtual bool IsTonerLifeExceeded(std::string_view id) = 0;
};

}  // namespace zt
