// UA.dll without a user: answers the agreement by a script and records what it was asked.
//
// UA-answer.txt beside the library holds the answer, any decimal number; 3 when there is none. Each question is a line
// in UA-asked.txt beside it, in UTF-8:
//   queue "Office" language "EN" countryIs52 0 -> 2
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>

#include "ProtectionAgreementUI.h"

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

File OpenBeside(const wchar_t* name, const wchar_t* mode) {
  HMODULE library = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&OpenBeside), &library);
  wchar_t path[MAX_PATH] = L"";
  GetModuleFileNameW(library, path, MAX_PATH);
  const std::wstring folder(path, std::wstring(path).find_last_of(L'\\') + 1);
  return File(_wfopen((folder + name).c_str(), mode));
}

int ReadAnswer() {
  char text[32] = "";
  const File file = OpenBeside(L"UA-answer.txt", L"rb");
  if (!file || !std::fgets(text, sizeof(text), file.get())) return UA_DISAGREED_UNREPORTED;
  return std::atoi(text);
}

std::string ToUtf8(const wchar_t* text) {
  std::string utf8(std::wstring_view(text).size() * 3 + 1, '\0');
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(length > 0 ? static_cast<std::size_t>(length) - 1 : 0);
  return utf8;
}

}  // namespace

extern "C" __declspec(dllexport) int __cdecl ShowProtectionAgreementUI(const wchar_t* queue, const wchar_t* language,
                                                                       int countryIs52) {
  const int answer = ReadAnswer();
  if (const File file = OpenBeside(L"UA-asked.txt", L"ab")) {
    std::fprintf(file.get(), "queue \"%s\" language \"%s\" countryIs52 %d -> %d\n", ToUtf8(queue).c_str(),
                 ToUtf8(language).c_str(), countryIs52, answer);
  }
  return answer;
}

static_assert(std::is_same_v<decltype(&ShowProtectionAgreementUI), ShowProtectionAgreementUIFunction>);
