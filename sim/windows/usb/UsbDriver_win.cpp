// usbprint-sim.sys: a USB printing class driver without USB. Its printers are those of the script
// C:\usbprint\printers.ini; what it is asked goes to C:\usbprint\transcript.txt. See UsbScript.h for the script.

// ntddk.h declares two functions as its own that are intrinsics to the compiler already.
// clang-format off
#include <intrin.h>
#define InterlockedBitTestAndSet UnusedBitTestAndSet
#define InterlockedBitTestAndReset UnusedBitTestAndReset
#include <ntddk.h>
#include <ntifs.h>
// clang-format on
#include <stdio.h>

#include "UsbScript.h"

namespace {

constexpr ULONG kTag = 0x7A747562;
constexpr size_t kLargest = 32 * 1024 * 1024;
constexpr ULONG kVendorGet = 0x0022003C;
constexpr ULONG kQueryDeviceID = 0x0016000C;
constexpr const wchar_t* kScriptPath = L"\\??\\C:\\usbprint\\printers.ini";
constexpr const wchar_t* kTranscriptPath = L"\\??\\C:\\usbprint\\transcript.txt";
constexpr const wchar_t* kInterfaceClass = L"{28d78fad-5a12-11d1-ae5b-0000f803a8c2}";

// Block: bytes in the kernel's pool.
struct Block {
  uint8_t* bytes;
  size_t size;
};

void Free(Block& block) {
  if (block.bytes) ExFreePoolWithTag(block.bytes, kTag);
  block = {nullptr, 0};
}

// PrinterExtension: one printer, beside its device object.
struct PrinterExtension {
  char name[128];
  wchar_t linkName[256];
  bool unplugged;
  int step;        // of the document exchange: 1 its size is asked for, 2 it is fetched
  Block document;  // of the exchange that is under way
};

// Turn: how often a key of a printer was asked for, known by where its first value stands in the script.
struct Turn {
  const char* key;
  unsigned count;
};

// Pending: a transfer that does not end yet.
struct Pending {
  Pending* next;
  IRP* irp;
  LONGLONG due;  // system time; 0: never
  NTSTATUS status;
  ULONG moved;
};

DRIVER_OBJECT* driver;
Block script;
Turn turns[256];
Pending* pending;
KSPIN_LOCK pendingLock;

UNICODE_STRING Unicode(const wchar_t* text) {
  UNICODE_STRING string;
  RtlInitUnicodeString(&string, text);
  return string;
}

HANDLE OpenFile(UNICODE_STRING* path, ACCESS_MASK access, ULONG disposition) {
  OBJECT_ATTRIBUTES attributes;
  InitializeObjectAttributes(&attributes, path, OBJ_CASE_INSENSITIVE, nullptr, nullptr);
  IO_STATUS_BLOCK io;
  HANDLE file = nullptr;
  const NTSTATUS status =
      ZwCreateFile(&file, access | SYNCHRONIZE, &attributes, &io, nullptr, FILE_ATTRIBUTE_NORMAL,
                   FILE_SHARE_READ | FILE_SHARE_WRITE, disposition, FILE_SYNCHRONOUS_IO_NONALERT, nullptr, 0);
  return NT_SUCCESS(status) ? file : nullptr;
}

// ReadFile: the content of a file; without bytes when it cannot be read.
Block ReadFile(UNICODE_STRING* path) {
  Block block = {nullptr, 0};
  const HANDLE file = OpenFile(path, GENERIC_READ, FILE_OPEN);
  if (!file) return block;
  IO_STATUS_BLOCK io;
  FILE_STANDARD_INFORMATION information;
  if (NT_SUCCESS(ZwQueryInformationFile(file, &io, &information, sizeof information, FileStandardInformation)) &&
      static_cast<size_t>(information.EndOfFile.QuadPart) <= kLargest) {
    const auto size = static_cast<ULONG>(information.EndOfFile.QuadPart);
    block.bytes = static_cast<uint8_t*>(ExAllocatePoolWithTag(NonPagedPool, size + 1, kTag));
    if (block.bytes &&
        NT_SUCCESS(ZwReadFile(file, nullptr, nullptr, nullptr, &io, block.bytes, size, nullptr, nullptr))) {
      block.size = io.Information;
    }
  }
  ZwClose(file);
  return block;
}

void Record(const PrinterExtension& printer, const char* what) {
  char line[256];
  const int length = _snprintf(line, sizeof line, "%s %s\r\n", printer.name, what);
  UNICODE_STRING path = Unicode(kTranscriptPath);
  const HANDLE file = OpenFile(&path, FILE_APPEND_DATA, FILE_OPEN_IF);
  if (!file || length < 0) return;
  IO_STATUS_BLOCK io;
  LARGE_INTEGER end;
  end.HighPart = -1;
  end.LowPart = FILE_WRITE_TO_END_OF_FILE;
  ZwWriteFile(file, nullptr, nullptr, nullptr, &io, line, static_cast<ULONG>(length), &end, nullptr);
  ZwClose(file);
}

// ReadScript: takes a changed script into use; every key begins with its first line again.
void ReadScript() {
  UNICODE_STRING path = Unicode(kScriptPath);
  Block fresh = ReadFile(&path);
  if (fresh.size == script.size && (fresh.size == 0 || memcmp(fresh.bytes, script.bytes, fresh.size) == 0)) {
    Free(fresh);
    return;
  }
  Free(script);
  script = fresh;
  for (Turn& turn : turns) turn = {nullptr, 0};
}

UsbText ScriptText() {
  const char* begin = reinterpret_cast<const char*>(script.bytes);
  return {begin, begin + script.size};
}

UsbText NameOf(const PrinterExtension& printer) {
  const char* end = printer.name;
  while (*end != '\0') ++end;
  return {printer.name, end};
}

// NextAction: what the script wants for this key, this time.
UsbAction NextAction(const PrinterExtension& printer, const char* key) {
  const UsbAnswers answers = FindAnswers(ScriptText(), NameOf(printer), key, 0);
  if (answers.count == 0) return ParseAction(answers.first);
  for (Turn& turn : turns) {
    if (turn.key && turn.key != answers.first.begin) continue;
    turn.key = answers.first.begin;
    return ParseAction(FindAnswers(ScriptText(), NameOf(printer), key, turn.count++).chosen);
  }
  return ParseAction(answers.first);
}

Block ReadOperandFile(UsbText operand) {
  wchar_t path[260];
  size_t length = 0;
  for (; length < operand.Size() && length < 259; ++length)
    path[length] = static_cast<unsigned char>(operand.begin[length]);
  path[length] = L'\0';
  UNICODE_STRING name = Unicode(path);
  return ReadFile(&name);
}

// Content: the bytes that an action stands for, padded and cut.
Block Content(const UsbAction& action) {
  Block content = {nullptr, 0};
  if (action.kind == UsbAction::kFile) {
    content = ReadOperandFile(action.operand);
  } else {
    const size_t room = action.operand.Size() + action.pad + 1;
    content.bytes = static_cast<uint8_t*>(ExAllocatePoolWithTag(NonPagedPool, room, kTag));
    if (!content.bytes) return content;
    content.size = action.kind == UsbAction::kHex ? ExpandHex(action.operand, content.bytes, room)
                                                  : ExpandText(action.operand, content.bytes, room);
    for (; content.size < action.pad; ++content.size) content.bytes[content.size] = 0;
  }
  if (content.size > action.cut) content.size = action.cut;
  return content;
}

void Unplug(PrinterExtension& printer) {
  printer.unplugged = true;
  UNICODE_STRING link = Unicode(printer.linkName);
  IoDeleteSymbolicLink(&link);
}

NTSTATUS Complete(IRP* irp, NTSTATUS status, ULONG moved) {
  irp->IoStatus.Status = status;
  irp->IoStatus.Information = moved;
  IoCompleteRequest(irp, IO_NO_INCREMENT);
  return status;
}

LONGLONG Now() {
  LARGE_INTEGER now;
  KeQuerySystemTime(&now);
  return now.QuadPart;
}

// TakePending: removes and answers the first entry that the test accepts.
template <class Test>
Pending* TakePending(Test test) {
  KIRQL irql;
  KeAcquireSpinLock(&pendingLock, &irql);
  Pending** at = &pending;
  while (*at && !test(**at)) at = &(*at)->next;
  Pending* const taken = *at;
  if (taken) *at = taken->next;
  KeReleaseSpinLock(&pendingLock, irql);
  return taken;
}

void NTAPI CancelPending(DEVICE_OBJECT*, IRP* irp) {
  IoReleaseCancelSpinLock(irp->CancelIrql);
  Pending* const taken = TakePending([irp](const Pending& entry) { return entry.irp == irp; });
  if (!taken) return;
  ExFreePoolWithTag(taken, kTag);
  Complete(irp, STATUS_CANCELLED, 0);
}

// Postpone: lets the transfer end later, or never.
NTSTATUS Postpone(IRP* irp, const UsbAction& action, NTSTATUS status, ULONG moved) {
  auto* const entry = static_cast<Pending*>(ExAllocatePoolWithTag(NonPagedPool, sizeof(Pending), kTag));
  if (!entry) return Complete(irp, STATUS_NO_MEMORY, 0);
  const LONGLONG due = action.kind == UsbAction::kHold ? 0 : Now() + 10000LL * action.delay;
  *entry = {nullptr, irp, due, status, moved};
  IoMarkIrpPending(irp);
  IoSetCancelRoutine(irp, CancelPending);
  KIRQL irql;
  KeAcquireSpinLock(&pendingLock, &irql);
  entry->next = pending;
  pending = entry;
  KeReleaseSpinLock(&pendingLock, irql);
  return STATUS_PENDING;
}

void NTAPI CompleteDue(void*) {
  for (;;) {
    LARGE_INTEGER pause;
    pause.QuadPart = -10 * 10000;
    KeDelayExecutionThread(KernelMode, FALSE, &pause);
    const LONGLONG now = Now();
    while (Pending* const taken = TakePending([now](const Pending& entry) { return entry.due && entry.due <= now; })) {
      IoSetCancelRoutine(taken->irp, nullptr);
      Complete(taken->irp, taken->status, taken->moved);
      ExFreePoolWithTag(taken, kTag);
    }
  }
}

// Finish: ends the transfer as its action says, and records it.
NTSTATUS Finish(PrinterExtension& printer, IRP* irp, const UsbAction& action, const char* what, ULONG moved) {
  NTSTATUS status = STATUS_SUCCESS;
  if (action.kind == UsbAction::kUnplug) Unplug(printer);
  if (action.kind == UsbAction::kNone || action.kind == UsbAction::kFail) status = static_cast<NTSTATUS>(action.status);
  if (printer.unplugged) status = STATUS_DEVICE_NOT_CONNECTED;
  if (!NT_SUCCESS(status)) moved = 0;

  char line[128];
  if (action.kind == UsbAction::kHold) {
    _snprintf(line, sizeof line, "%s held", what);
  } else if (NT_SUCCESS(status)) {
    _snprintf(line, sizeof line, "%s -> %lu", what, moved);
  } else {
    _snprintf(line, sizeof line, "%s failed %08X", what, static_cast<unsigned>(status));
  }
  Record(printer, line);
  if (action.kind == UsbAction::kHold || action.delay > 0) return Postpone(irp, action, status, moved);
  return Complete(irp, status, moved);
}

// Deliver: copies the content into the transfer's buffer; how much fits.
ULONG Deliver(IRP* irp, ULONG room, Block content) {
  const ULONG moved = content.size < room ? static_cast<ULONG>(content.size) : room;
  if (moved > 0) memcpy(irp->AssociatedIrp.SystemBuffer, content.bytes, moved);
  return moved;
}

bool HasContent(const UsbAction& action) {
  return action.kind == UsbAction::kText || action.kind == UsbAction::kHex || action.kind == UsbAction::kFile;
}

ULONG DeliverContent(IRP* irp, ULONG room, const UsbAction& action) {
  if (!HasContent(action)) return 0;
  Block content = Content(action);
  const ULONG moved = Deliver(irp, room, content);
  Free(content);
  return moved;
}

NTSTATUS NTAPI OnControl(DEVICE_OBJECT* device, IRP* irp) {
  auto& printer = *static_cast<PrinterExtension*>(device->DeviceExtension);
  const auto& control = IoGetCurrentIrpStackLocation(irp)->Parameters.DeviceIoControl;
  char what[64] = "id";
  if (control.IoControlCode == kVendorGet) {
    const auto* request = static_cast<const uint8_t*>(irp->AssociatedIrp.SystemBuffer);
    if (control.InputBufferLength != 3) return Complete(irp, STATUS_INVALID_PARAMETER, 0);
    _snprintf(what, sizeof what, "%02X %02X %02X", request[0], request[1], request[2]);
  } else if (control.IoControlCode != kQueryDeviceID) {
    return Complete(irp, STATUS_INVALID_DEVICE_REQUEST, 0);
  }
  const UsbAction action = NextAction(printer, what);
  return Finish(printer, irp, action, what, DeliverContent(irp, control.OutputBufferLength, action));
}

UsbAction TransferAction(const PrinterExtension& printer, const char* key) {
  UsbAction action = NextAction(printer, key);
  if (action.kind == UsbAction::kNone) action.kind = UsbAction::kUsual;
  return action;
}

NTSTATUS NTAPI OnWrite(DEVICE_OBJECT* device, IRP* irp) {
  auto& printer = *static_cast<PrinterExtension*>(device->DeviceExtension);
  const ULONG size = IoGetCurrentIrpStackLocation(irp)->Parameters.Write.Length;
  const auto* bytes = static_cast<const uint8_t*>(irp->AssociatedIrp.SystemBuffer);
  char what[80];
  int length = _snprintf(what, sizeof what, "write");
  for (ULONG i = 0; i < size && i < 16; ++i) length += _snprintf(what + length, 8, " %02X", bytes[i]);

  const UsbAction action = TransferAction(printer, "write");
  const bool isHeader = size == 16 && bytes[0] == 0x1B && bytes[1] == 0x91;
  if (action.kind == UsbAction::kUsual && isHeader) {
    printer.step = bytes[11];
    if (printer.step == 1) {
      Free(printer.document);
      const UsbAction document = NextAction(printer, "document");
      if (HasContent(document)) printer.document = Content(document);
    }
  }
  return Finish(printer, irp, action, what, size < action.cut ? size : action.cut);
}

NTSTATUS NTAPI OnRead(DEVICE_OBJECT* device, IRP* irp) {
  auto& printer = *static_cast<PrinterExtension*>(device->DeviceExtension);
  const ULONG size = IoGetCurrentIrpStackLocation(irp)->Parameters.Read.Length;
  char what[32];
  _snprintf(what, sizeof what, "read %lu", size);

  const UsbAction action = TransferAction(printer, "read");
  ULONG moved = 0;
  if (action.kind != UsbAction::kUsual) {
    moved = DeliverContent(irp, size, action);
  } else if (printer.step == 2) {
    moved = Deliver(irp, size, printer.document);
  } else {
    const auto length = static_cast<uint32_t>(printer.document.size);
    uint8_t header[16] = {0x1B, 0x91};
    for (int i = 0; i < 4; ++i) header[12 + i] = static_cast<uint8_t>(length >> (24 - 8 * i));
    moved = Deliver(irp, size, {header, sizeof header});
  }
  return Finish(printer, irp, action, what, moved < action.cut ? moved : action.cut);
}

NTSTATUS NTAPI OnCreate(DEVICE_OBJECT* device, IRP* irp) {
  ReadScript();
  Record(*static_cast<PrinterExtension*>(device->DeviceExtension), "open");
  return Complete(irp, STATUS_SUCCESS, 0);
}

NTSTATUS NTAPI OnClose(DEVICE_OBJECT* device, IRP* irp) {
  const FILE_OBJECT* const file = IoGetCurrentIrpStackLocation(irp)->FileObject;
  while (Pending* const taken = TakePending(
             [file](const Pending& entry) { return IoGetCurrentIrpStackLocation(entry.irp)->FileObject == file; })) {
    Complete(taken->irp, STATUS_CANCELLED, 0);
    ExFreePoolWithTag(taken, kTag);
  }
  Record(*static_cast<PrinterExtension*>(device->DeviceExtension), "close");
  return Complete(irp, STATUS_SUCCESS, 0);
}

// AddPrinter: makes the printer's device, and the link that its device path names.
void AddPrinter(UsbText name, int number) {
  wchar_t deviceName[64];
  _snwprintf(deviceName, 64, L"\\Device\\ZTUsbPrinter%d", number);
  UNICODE_STRING device = Unicode(deviceName);
  DEVICE_OBJECT* object = nullptr;
  if (!NT_SUCCESS(IoCreateDevice(driver, sizeof(PrinterExtension), &device, FILE_DEVICE_UNKNOWN, 0, FALSE, &object))) {
    return;
  }
  object->Flags |= DO_BUFFERED_IO;
  object->Flags &= ~static_cast<ULONG>(DO_DEVICE_INITIALIZING);

  auto& printer = *static_cast<PrinterExtension*>(object->DeviceExtension);
  printer = {};
  wchar_t wideName[128] = {};
  for (size_t i = 0; i < name.Size() && i < 127; ++i) {
    printer.name[i] = name.begin[i];
    wideName[i] = static_cast<unsigned char>(name.begin[i]);
  }
  _snwprintf(printer.linkName, 255, L"\\??\\usb#%ls#%ls", wideName, kInterfaceClass);
  UNICODE_STRING link = Unicode(printer.linkName);
  UNICODE_STRING nowhere = Unicode(L"\\Device\\ZTUsbNowhere");
  const bool leadsNowhere = NextAction(printer, "link").kind == UsbAction::kNowhere;
  IoCreateSymbolicLink(&link, leadsNowhere ? &nowhere : &device);
}

}  // namespace

extern "C" NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT* object, UNICODE_STRING*) {
  driver = object;
  KeInitializeSpinLock(&pendingLock);
  object->MajorFunction[IRP_MJ_CREATE] = OnCreate;
  object->MajorFunction[IRP_MJ_CLOSE] = OnClose;
  object->MajorFunction[IRP_MJ_READ] = OnRead;
  object->MajorFunction[IRP_MJ_WRITE] = OnWrite;
  object->MajorFunction[IRP_MJ_DEVICE_CONTROL] = OnControl;
  ReadScript();
  int number = 0;
  for (UsbText rest = ScriptText(); !rest.Empty();) {
    const UsbText name = PrinterOfLine(TakeLine(rest));
    if (!name.Empty()) AddPrinter(name, ++number);
  }
  HANDLE thread = nullptr;
  const NTSTATUS status =
      PsCreateSystemThread(&thread, THREAD_ALL_ACCESS, nullptr, nullptr, nullptr, CompleteDue, nullptr);
  if (NT_SUCCESS(status)) ZwClose(thread);
  return status;
}
