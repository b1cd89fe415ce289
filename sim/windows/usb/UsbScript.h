#pragma once

#include <stddef.h>
#include <stdint.h>

// The script of the simulated USB printers. It is read inside the kernel: no library stands behind this code, all of it
// works on the text in memory.
//
//   # A comment. Keys that occur again are the next answer; the last one stays.
//   [printer VID_1A2B&PID_0001#SN0001]
//   id       = text MFG:Velnora;MDL:Velnora RV-2160;CMD:ZOLT,FWV;
//   02 00 00 = hex 00 AA AA AA
//   02 00 00 = hex 01 00 00 00 40
//   43 00 00 = pad 255 hex 00 00 00 09
//   49 00 01 = text SN0001\r\n
//   document = file \??\C:\usbprint\document.xml
//   read     = usual
//   read     = delay 500 cut 10 usual
//   write    = usual
//
// Keys: "id", the three bytes of a vendor request, "document" (what an exchange over the bulk pipes delivers), "read"
// and "write" (what happens to each transfer; "usual" when left out), "link" (how the device path is made).
// A value is any of the words "delay MILLISECONDS", "pad BYTES" (fills up with zeros) and "cut BYTES" (moves no more
// than so many), and then one of:
//   text TEXT      to the end of the line; \r \n \t \0 \\ stand for those characters
//   hex BYTES
//   file PATH      the content of a file, named as the kernel does
//   usual          the step of the document exchange that is due (only for read and write)
//   fail [STATUS]  fails with that NT status in hexadecimal, else C0000001
//   hold           does not end until it is cancelled
//   unplug         the printer is gone, from this moment on
// Of "link": "usual", or "nowhere": it is listed but does not open.

struct UsbText {
  const char* begin;
  const char* end;

  size_t Size() const { return static_cast<size_t>(end - begin); }
  bool Empty() const { return begin == end; }
};

// Equals: the texts are the same, letters A to Z and a to z taken as equal.
bool Equals(UsbText left, UsbText right);
bool Equals(UsbText left, const char* right);

// TakeWord: removes the first word and the blanks around it.
UsbText TakeWord(UsbText& text);

// TakeLine: removes the first line, with its end; the line comes without blanks around it.
UsbText TakeLine(UsbText& text);

// ParseNumber: decimal or hexadecimal digits, 0 without any.
uint32_t ParseNumber(UsbText digits, unsigned base);

// PrinterOfLine: the name in a "[printer NAME]" line; empty for any other line.
UsbText PrinterOfLine(UsbText line);

// UsbAnswers: the lines of one key of one printer.
struct UsbAnswers {
  UsbText first;  // values; empty without such a line
  UsbText chosen;
  unsigned count;
};

// FindAnswers: looks the key up; `turn`, from 0, chooses among its lines, and the last one stands for all that follow.
UsbAnswers FindAnswers(UsbText script, UsbText printer, const char* key, unsigned turn);

// UsbAction: one value, taken apart.
struct UsbAction {
  enum Kind { kNone, kText, kHex, kFile, kUsual, kFail, kHold, kUnplug, kNowhere } kind;
  uint32_t delay;   // milliseconds
  uint32_t pad;     // 0: not padded
  uint32_t cut;     // ffffffff: not cut
  uint32_t status;  // of kFail
  UsbText operand;
};

UsbAction ParseAction(UsbText value);

// Expand: writes what a text or hex operand stands for, at most `capacity` bytes; how many.
size_t ExpandText(UsbText operand, uint8_t* out, size_t capacity);
size_t ExpandHex(UsbText operand, uint8_t* out, size_t capacity);
