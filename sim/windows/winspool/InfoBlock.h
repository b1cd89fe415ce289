#pragma once

#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "SpoolCall.h"

// InfoBlock: an array of spooler structures with the texts that they point to behind them, in one block, as every
// spooler call of the two-step kind (ask for the size, then fill) hands it out.
template <class Info>
class InfoBlock {
 public:
  // Add: a further structure, whose texts are then given by Text.
  void Add(const Info& info) { infos_.push_back(info); }

  // Text: gives the structure added last a text; an absent one stays a null pointer.
  void Text(LPWSTR Info::*field, const std::optional<std::wstring>& text) {
    if (text) texts_.push_back({infos_.size() - 1, field, *text});
  }

  DWORD Size() const {
    size_t size = infos_.size() * sizeof(Info);
    for (const PendingText& text : texts_) size += (text.text.size() + 1) * sizeof(wchar_t);
    return static_cast<DWORD>(size);
  }

  // Answer: fills the caller's buffer if it is large enough, else tells the size; a scripted "NAME.needed" lies about
  // it, a scripted "NAME.returned" about the count (given only to calls that return one).
  BOOL Answer(SpoolCall& call, BYTE* buffer, DWORD bufferSize, DWORD* needed, DWORD* returned) {
    const DWORD told = call.Scripted(L"needed").value_or(Size());
    if (returned) *returned = 0;
    if (needed) *needed = told;
    const std::wstring size = L", needed " + std::to_wstring(told);
    if (bufferSize < Size() || (!buffer && Size() > 0)) return call.Fail(ERROR_INSUFFICIENT_BUFFER, size);
    CopyTo(buffer);
    if (!returned) return call.Succeed(size);
    *returned = call.Scripted(L"returned").value_or(static_cast<unsigned long>(infos_.size()));
    return call.Succeed(size + L", returned " + std::to_wstring(*returned));
  }

 private:
  struct PendingText {
    size_t index;
    LPWSTR Info::*field;
    std::wstring text;
  };

  void CopyTo(BYTE* buffer) {
    auto* target = reinterpret_cast<wchar_t*>(buffer + infos_.size() * sizeof(Info));
    for (const PendingText& text : texts_) {
      infos_[text.index].*text.field = target;
      target = std::copy_n(text.text.c_str(), text.text.size() + 1, target);
    }
    if (!infos_.empty())
      std::copy_n(reinterpret_cast<const BYTE*>(infos_.data()), infos_.size() * sizeof(Info), buffer);
  }

  std::vector<Info> infos_;
  std::vector<PendingText> texts_;
};
