// The entry of the program: reads the command line and the registry flags, makes the start-up checks in their fixed
// order, builds the objects of a run and starts it. Every early end writes one trace line; the exit code is always 0.

#include <windows.h>
#include <shellapi.h>
#include <ztsnmp/SNMPManager.h>

#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "AgreementDialog.h"
#include "CommandLine.h"
#include "ConfirmBox.h"
#include "DriverModel.h"
#include "Handle.h"
#include "Installer.h"
#include "Logger.h"
#include "ModulePath.h"
#include "PPAProcessor.h"
#include "PrinterInformation.h"
#include "ProgramFlags.h"
#include "ProtectionGuard.h"
#include "StoredAgreement.h"
#include "TestDialog.h"
#include "Trace.h"
#include "VirtualZOLTDataProvider.h"
#include "ZOLTDataProviderFromPrinter.h"
#include "ZOLTInstanceHandler.h"
#include "ZOLTLocalSetting.h"
#include "ZOLTProcessor.h"
#include "ZOLTReportToServer.h"
#include "ZOLTSkipChecker.h"

namespace zt {
namespace {

std::time_t CurrentTime() { return std::time(nullptr); }

// The SNMP library, from its start to its clean-up. A failed start is not looked at, on purpose: the reads then fail,
// each with its own trace line.
struct SnmpLibrary {
  SnmpLibrary() { SNMPStartup(); }
  ~SnmpLibrary() { SNMPCleanup(); }
  SnmpLibrary(const SnmpLibrary&) = delete;
  SnmpLibrary& operator=(const SnmpLibrary&) = delete;
};

CommandLine ReadCommandLine(const wchar_t* text) {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalFreeDeleter> arguments(CommandLineToArgvW(text, &count));
  if (!arguments || count < 1) return CommandLine();
  return CommandLine::Parse(std::vector<std::wstring_view>(arguments.get() + 1, arguments.get() + count));
}

// Agent is one start of the program against one queue, from the moment that the queue is known.
class Agent {
 public:
  Agent(std::wstring queueName, std::wstring baseName, ProgramFlags flags, const PrinterInformation& queue,
        ZOLTLocalSetting& settings)
      : queueName_(std::move(queueName)),
        baseName_(std::move(baseName)),
        flags_(std::move(flags)),
        queue_(queue),
        settings_(settings),
        fromPrinter_(queueName_, LocalQueueServices()),
        virtualPrinter_(queueName_),
        server_(PostFormOverHttp, SystemPause),
        skipChecker_(&settings, CurrentTime) {
    if (flags_.url) server_.SetBaseURL(ToNarrow(*flags_.url));
    server_.SetTestMode(flags_.testMode);
    server_.SetDontCheckSkip(flags_.dontCheckSkip);
    skipChecker_.SetDontCheckSkip(flags_.dontCheckSkip);
  }

  // RunProductProtection returns whether the process goes on. While another process is at work on the queue, the run is
  // left out without a word.
  bool RunProductProtection(const std::wstring& language) {
    {
      const ProtectionGuard guard(queueName_);
      if (guard.HeldByAnother()) return true;

      ZT_TRACE(Information, "[ZT] Product protection mode processing start....");
      if (bool enabled = true; settings_.GetPPAEnabled(enabled) && !enabled) {
        ZT_TRACE(Information, "PPA disabled! bye~ " << baseName_);
        return false;
      }
      server_.SetAgreement(ReadStoredAgreement(std::wstring(ModelOfDriver(queue_.DriverName()))));
      PPAProcessor(ConfirmSending, ShowAgreementDialog)
          .Run({.showResult = flags_.showResultBeforeSend, .language = language}, Provider(), server_, skipChecker_);
    }
    WriteDebug("[ZT] refill - end");
    return true;
  }

  // RunPrintVolume returns whether the run was made.
  bool RunPrintVolume() {
    if (instanceHandler.AlreadyRunning()) {
      ZT_TRACE(Warning, "zolt data collecting already running.. bye~");
      return false;
    }
    if (bool enabled = true; settings_.GetZOLTEnabled(enabled) && !enabled) {
      ZT_TRACE(Information, "zolt disabled! bye~ " << baseName_);
      return false;
    }
    if (!flags_.virtualTest && !CheckQueueIsLocal(queue_)) {
      ZT_TRACE(Warning, "not supported Environment! bye~" << queueName_);
      return false;
    }
    ZOLTProcessor(ConfirmSending).Run({.showResult = flags_.showResultBeforeSend}, Provider(), server_, skipChecker_);
    return true;
  }

 private:
  IZOLTDataProvider& Provider() {
    if (flags_.virtualTest) return virtualPrinter_;
    return fromPrinter_;
  }

  const std::wstring queueName_;
  const std::wstring baseName_;
  const ProgramFlags flags_;
  const PrinterInformation& queue_;
  ZOLTLocalSetting& settings_;
  SnmpLibrary snmp_;
  ZOLTDataProviderFromPrinter fromPrinter_;
  VirtualZOLTDataProvider virtualPrinter_;
  ZOLTReportToServer server_;
  ZOLTSkipChecker skipChecker_;
};

void ShowTest(const ModulePath& program, const std::wstring& queueName) {
  ShowTestDialog(
      {.queueName = queueName,
       .baseName = program.baseName,
       .readPolicy =
           [] {
             const ProgramFlags flags = ProgramFlags::Read();
             return TestDialogStart::Policy{flags.disable, flags.dontCheckSkip, flags.virtualTest, flags.url};
           },
       .readAgreement =
           [](const std::wstring& driverName) { return FindStoredAgreement(std::wstring(ModelOfDriver(driverName))); },
       .isRunAtWork =
           [](const std::wstring& queue) {
             return ZOLTInstanceHandler::IsAnyRunning() || ProtectionGuard::IsHeld(queue);
           }});
}

// Answers whether the program went through to its end: an early end writes no end marker, on purpose.
bool RunProgram() {
  constexpr int kPreviousInstanceAttempts = 10;

  WriteDebug("ZOLT - start");
  const ModulePath program = ModulePath::OfThisProgram();
  processLogger.Start(L"ZOLT");
  ZT_TRACE(Information, std::wstring_view(GetCommandLineW()));
  const CommandLine commandLine = ReadCommandLine(GetCommandLineW());

  if (commandLine.Has(L"UnInstall")) {
    ZT_TRACE(Information, "wait...");
    instanceHandler.WaitForPrevious(kPreviousInstanceAttempts, SystemPause);
    ZT_TRACE(Information, "uninstall");
    Uninstall(program.baseName);
    return false;
  }
  if (commandLine.Has(L"Install")) {
    ZT_TRACE(Information, "wait...");
    instanceHandler.WaitForPrevious(kPreviousInstanceAttempts, SystemPause);
    ZT_TRACE(Information, "install");
    Install(program);
    return false;
  }
  if (commandLine.Has(L"ShowTest")) {
    ZT_TRACE(Information, "Show Test");
    // It is no run, and must hold up none for as long as it is open.
    instanceHandler.Release();
    ShowTest(program, commandLine.Value(L"QName").value_or(L""));
    return false;
  }

  const auto queueName = commandLine.Value(L"QName");
  if (!queueName) {
    ZT_TRACE(Error, "no QName!!! bye~");
    return false;
  }
  PrinterInformation queue;
  if (!queue.ReadPrinterInfo(*queueName)) {
    ZT_TRACE(Error, "open printer failed!!! bye~");
    return false;
  }
  if (queue.DriverName().empty()) {
    ZT_TRACE(Error, "failed to get driver name!!! bye~");
    return false;
  }

  const RunSelection runs = SelectRuns(commandLine);
  ProgramFlags flags = ProgramFlags::Read();
  if (flags.disable) {
    ZT_TRACE(Information, "disabled by admin... bye~~~");
    return false;
  }
  ZOLTLocalSetting settings(ToNarrow(program.baseName));
  // Without a memory every start would post again.
  if (!settings.Load() || !settings.CanBeKept()) {
    ZT_TRACE(Information, "not enough permission! bye~ " << program.baseName);
    return false;
  }

  Agent agent(*queueName, program.baseName, std::move(flags), queue, settings);
  if (runs.productProtection && !agent.RunProductProtection(commandLine.Value(L"Lang").value_or(L"EN"))) return false;
  return !runs.printVolume || agent.RunPrintVolume();
}

}  // namespace
}  // namespace zt

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  // Libraries that are loaded by name are never taken from the current folder.
  SetDllDirectoryW(L"");
  try {
    if (zt::RunProgram()) zt::WriteDebug("ZOLT - end");
  } catch (...) {
    ZT_TRACE(Error, "Unknown Exception !!!");
    zt::WriteDebug("[ZOLT] Unknown Exception !!!");
  }
  return 0;
}
