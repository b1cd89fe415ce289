#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zt {

// TestDialogStart is what the entry hands to the test dialog: what only the entry knows how to find out.
struct TestDialogStart {
  std::wstring queueName;  // the queue that the dialog begins at; empty without one
  std::wstring baseName;   // of the program, which is the name of its settings

  // What an administrator has set (see ProgramFlags), read anew at each call.
  struct Policy {
    bool disabled = false;
    bool skipRulesOff = false;
    bool virtualTest = false;
    std::optional<std::wstring> url;
  };
  std::function<Policy()> readPolicy;

  // Answers whether the user's agreement to product protection is stored for the printers of a driver.
  std::function<bool(const std::wstring& driverName)> readAgreement;

  // Answers whether a run of the agent is at work now, on this queue or on any.
  std::function<bool(const std::wstring& queueName)> isRunAtWork;
};

// ShowTestDialog opens the test dialog and returns when it is closed (Windows only). It drives the providers, the
// report server's exchanges and the protection command by hand, and changes nothing unless a button says so.
void ShowTestDialog(const TestDialogStart& start);

}  // namespace zt
