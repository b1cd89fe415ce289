#include "UsbScript.h"

namespace {

bool IsBlank(char character) { return character == ' ' || character == '\t' || character == '\r'; }

char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

int DigitValue(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  const char lower = Lower(character);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

UsbText Trimmed(UsbText text) {
  while (text.begin < text.end && IsBlank(*text.begin)) ++text.begin;
  while (text.begin < text.end && IsBlank(text.end[-1])) --text.end;
  return text;
}

UsbText TextOf(const char* literal) {
  const char* end = literal;
  while (*end != '\0') ++end;
  return {literal, end};
}

// KeyAndValue: whether the line is "key = value".
bool KeyAndValue(UsbText line, UsbText& key, UsbText& value) {
  for (const char* at = line.begin; at < line.end; ++at) {
    if (*at != '=') continue;
    key = Trimmed({line.begin, at});
    value = Trimmed({at + 1, line.end});
    return true;
  }
  return false;
}

}  // namespace

bool Equals(UsbText left, UsbText right) {
  if (left.Size() != right.Size()) return false;
  for (size_t i = 0; i < left.Size(); ++i) {
    if (Lower(left.begin[i]) != Lower(right.begin[i])) return false;
  }
  return true;
}

bool Equals(UsbText left, const char* right) { return Equals(left, TextOf(right)); }

UsbText TakeWord(UsbText& text) {
  text = Trimmed(text);
  UsbText word = {text.begin, text.begin};
  while (word.end < text.end && !IsBlank(*word.end)) ++word.end;
  text = Trimmed({word.end, text.end});
  return word;
}

UsbText TakeLine(UsbText& text) {
  UsbText line = {text.begin, text.begin};
  while (line.end < text.end && *line.end != '\n') ++line.end;
  text.begin = line.end < text.end ? line.end + 1 : text.end;
  return Trimmed(line);
}

uint32_t ParseNumber(UsbText digits, unsigned base) {
  uint32_t number = 0;
  for (const char* at = digits.begin; at < digits.end; ++at) {
    const int value = DigitValue(*at);
    if (value < 0 || value >= static_cast<int>(base)) break;
    number = number * base + static_cast<uint32_t>(value);
  }
  return number;
}

UsbText PrinterOfLine(UsbText line) {
  if (line.Size() < 2 || *line.begin != '[' || line.end[-1] != ']') return {line.end, line.end};
  UsbText inside = {line.begin + 1, line.end - 1};
  if (!Equals(TakeWord(inside), "printer")) return {line.end, line.end};
  return inside;
}

UsbAnswers FindAnswers(UsbText script, UsbText printer, const char* key, unsigned turn) {
  UsbAnswers answers = {{script.end, script.end}, {script.end, script.end}, 0};
  bool inside = false;
  while (!script.Empty()) {
    const UsbText line = TakeLine(script);
    if (line.Empty() || *line.begin == '#') continue;
    if (*line.begin == '[') {
      inside = Equals(PrinterOfLine(line), printer);
      continue;
    }
    UsbText name;
    UsbText value;
    if (!inside || !KeyAndValue(line, name, value) || !Equals(name, key)) continue;
    if (answers.count == 0) answers.first = value;
    if (answers.count <= turn) answers.chosen = value;
    ++answers.count;
  }
  return answers;
}

UsbAction ParseAction(UsbText value) {
  UsbAction action = {UsbAction::kNone, 0, 0, 0xFFFFFFFF, 0xC0000001, value};
  for (;;) {
    const UsbText word = TakeWord(value);
    if (Equals(word, "delay")) {
      action.delay = ParseNumber(TakeWord(value), 10);
    } else if (Equals(word, "pad")) {
      action.pad = ParseNumber(TakeWord(value), 10);
    } else if (Equals(word, "cut")) {
      action.cut = ParseNumber(TakeWord(value), 10);
    } else {
      action.operand = value;
      if (Equals(word, "text")) action.kind = UsbAction::kText;
      if (Equals(word, "hex")) action.kind = UsbAction::kHex;
      if (Equals(word, "file")) action.kind = UsbAction::kFile;
      if (Equals(word, "usual")) action.kind = UsbAction::kUsual;
      if (Equals(word, "fail")) action.kind = UsbAction::kFail;
      if (Equals(word, "hold")) action.kind = UsbAction::kHold;
      if (Equals(word, "unplug")) action.kind = UsbAction::kUnplug;
      if (Equals(word, "nowhere")) action.kind = UsbAction::kNowhere;
      if (action.kind == UsbAction::kFail && !value.Empty()) action.status = ParseNumber(TakeWord(value), 16);
      return action;
    }
  }
}

size_t ExpandText(UsbText operand, uint8_t* out, size_t capacity) {
  size_t size = 0;
  for (const char* at = operand.begin; at < operand.end && size < capacity; ++at) {
    char character = *at;
    if (character == '\\' && at + 1 < operand.end) {
      ++at;
      character = *at == 'r' ? '\r' : *at == 'n' ? '\n' : *at == 't' ? '\t' : *at == '0' ? '\0' : *at;
    }
    out[size++] = static_cast<uint8_t>(character);
  }
  return size;
}

size_t ExpandHex(UsbText operand, uint8_t* out, size_t capacity) {
  size_t size = 0;
  while (!operand.Empty() && size < capacity) out[size++] = static_cast<uint8_t>(ParseNumber(TakeWord(operand), 16));
  return size;
}
