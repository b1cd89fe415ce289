// Queues: opening and closing, and the questions about them.
#include <windows.h>
#include <winspool.h>

#include "InfoBlock.h"
#include "SpoolCall.h"
#include "SpoolFiles.h"

namespace {

constexpr std::wstring_view kXcvMark = L",XcvPort ";

// The target of a handle name: "Office" is a queue; ",XcvPort IP_1" and "\\server\,XcvPort IP_1" are ports.
SpoolHandle Resolve(std::wstring_view name) {
  const size_t mark = name.find(kXcvMark);
  if (mark == name.npos) return {SpoolScript::Instance().Find(L"queue", name)};
  return {SpoolScript::Instance().Find(L"port", name.substr(mark + kXcvMark.size())), true};
}

ScriptSection* QueueOf(HANDLE printer) {
  const SpoolHandle* handle = FindHandle(printer);
  return handle && !handle->xcv ? handle->target : nullptr;
}

std::wstring NameOf(const ScriptSection* target) { return Quoted(target ? target->name().c_str() : nullptr); }

}  // namespace

extern "C" BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults) {
  const SpoolHandle handle = name ? Resolve(name) : SpoolHandle{nullptr};
  std::wstring what = Quoted(name);
  if (defaults) {
    what += L" access " + std::to_wstring(defaults->DesiredAccess) + L" datatype " + Quoted(defaults->pDatatype);
  }
  SpoolCall call(L"OpenPrinterW", what, handle.target);
  if (call.FailsByScript()) return FALSE;
  if (!handle.target || !printer) return call.Fail(ERROR_INVALID_PRINTER_NAME);
  *printer = AddHandle(handle);
  return call.Succeed();
}

extern "C" BOOL WINAPI ClosePrinter(HANDLE printer) {
  const SpoolHandle* handle = FindHandle(printer);
  SpoolCall call(L"ClosePrinter", NameOf(handle ? handle->target : nullptr), nullptr);
  return RemoveHandle(printer) ? call.Succeed() : call.Fail(ERROR_INVALID_HANDLE);
}

extern "C" BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed) {
  ScriptSection* queue = QueueOf(printer);
  SpoolCall call(L"GetPrinterW",
                 NameOf(queue) + L" level " + std::to_wstring(level) + L" size " + std::to_wstring(size), queue);
  if (!queue) return call.Fail(ERROR_INVALID_HANDLE);
  if (call.FailsByScript()) return FALSE;
  if (level != 2) return call.Fail(ERROR_INVALID_LEVEL);

  PRINTER_INFO_2W info{};
  info.Attributes = queue->Number(L"attributes", PRINTER_ATTRIBUTE_LOCAL);
  info.Status = queue->Number(L"status", 0);
  info.cJobs = queue->Peek(L"jobs").value_or(0);
  InfoBlock<PRINTER_INFO_2W> block;
  block.Add(info);
  block.Text(&PRINTER_INFO_2W::pServerName, queue->Text(L"server"));
  block.Text(&PRINTER_INFO_2W::pPrinterName, queue->name());
  block.Text(&PRINTER_INFO_2W::pShareName, queue->Text(L"share"));
  block.Text(&PRINTER_INFO_2W::pPortName, queue->Text(L"port"));
  block.Text(&PRINTER_INFO_2W::pDriverName, queue->Text(L"driver"));
  block.Text(&PRINTER_INFO_2W::pPrintProcessor, L"winprint");
  block.Text(&PRINTER_INFO_2W::pDatatype, L"RAW");
  return block.Answer(call, buffer, size, needed, nullptr);
}

extern "C" BOOL WINAPI EnumJobsW(HANDLE printer, DWORD first, DWORD count, DWORD level, LPBYTE buffer, DWORD size,
                                 LPDWORD needed, LPDWORD returned) {
  ScriptSection* queue = QueueOf(printer);
  SpoolCall call(L"EnumJobsW",
                 NameOf(queue) + L" first " + std::to_wstring(first) + L" count " + std::to_wstring(count) +
                     L" level " + std::to_wstring(level) + L" size " + std::to_wstring(size),
                 queue);
  if (!queue) return call.Fail(ERROR_INVALID_HANDLE);
  if (call.FailsByScript()) return FALSE;
  if (level != 1) return call.Fail(ERROR_INVALID_LEVEL);

  const DWORD jobs = queue->Peek(L"jobs").value_or(0);
  InfoBlock<JOB_INFO_1W> block;
  for (DWORD position = first; position < jobs && position - first < count; ++position) {
    JOB_INFO_1W info{};
    info.JobId = position + 1;
    info.Position = position + 1;
    info.TotalPages = 1;
    block.Add(info);
    block.Text(&JOB_INFO_1W::pPrinterName, queue->name());
    block.Text(&JOB_INFO_1W::pDocument, L"Document " + std::to_wstring(position + 1));
    block.Text(&JOB_INFO_1W::pDatatype, L"RAW");
  }
  const BOOL answered = block.Answer(call, buffer, size, needed, returned);
  // The queue goes on only when it was really seen: asking for the size is no poll.
  if (answered && buffer) queue->Next(L"jobs");
  return answered;
}

extern "C" BOOL WINAPI EnumPrintersW(DWORD flags, LPWSTR name, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed,
                                     LPDWORD returned) {
  SpoolCall call(L"EnumPrintersW",
                 L"flags " + std::to_wstring(flags) + L" name " + Quoted(name) + L" level " + std::to_wstring(level) +
                     L" size " + std::to_wstring(size),
                 nullptr);
  if (call.FailsByScript()) return FALSE;
  if (level != 1) return call.Fail(ERROR_INVALID_LEVEL);

  InfoBlock<PRINTER_INFO_1W> block;
  for (const ScriptSection* queue : SpoolScript::Instance().All(L"queue")) {
    const std::wstring listed = queue->Text(L"listed").value_or(L"yes");
    if (listed == L"no") continue;
    PRINTER_INFO_1W info{};
    info.Flags = PRINTER_ENUM_ICON8;
    block.Add(info);
    block.Text(&PRINTER_INFO_1W::pDescription, queue->name() + L"," + queue->Text(L"driver").value_or(L"") + L",");
    if (listed != L"nameless") block.Text(&PRINTER_INFO_1W::pName, queue->name());
  }
  return block.Answer(call, buffer, size, needed, returned);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_DETACH) Record(L"process ends, open handles: " + std::to_wstring(CountHandles()));
  return TRUE;
}
