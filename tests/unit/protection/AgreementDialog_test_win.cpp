#include "AgreementDialog.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "TempFolder.h"
#include "TraceCapture.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

std::filesystem::path ProgramFolder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

// The library that the build lays beside this program answers by the language; see AgreementAnswers.cpp.
TEST(AgreementDialogTest, OnlyTheLibraryOfTheProgramsFolderIsAsked) {
  const std::filesystem::path answers = ProgramFolder() / L"AgreementAnswers.dll";
  const std::filesystem::path library = ProgramFolder() / L"UA.dll";
  const TempFolder current;
  const TraceCapture trace;
  std::filesystem::remove(library);
  std::filesystem::copy_file(answers, current.Path(L"UA.dll"));
  std::filesystem::current_path(current.Path(L""));
  EXPECT_EQ(ShowAgreementDialog(L"Queue", L"1", true), Agreement::DisagreedUnreported)
      << "the library of the current folder was asked";

  std::filesystem::copy_file(answers, library);
  EXPECT_EQ(ShowAgreementDialog(L"Queue", L"1", true), Agreement::Agreed);
  EXPECT_EQ(ShowAgreementDialog(L"Queue", L"2", true), Agreement::Disagreed);
  EXPECT_EQ(ShowAgreementDialog(L"Queue", L"1", false), Agreement::Disagreed) << "the library answers one more";
  for (const wchar_t* unreported : {L"3", L"0", L"4", L"-1"}) {
    EXPECT_EQ(ShowAgreementDialog(L"Queue", unreported, true), Agreement::DisagreedUnreported);
  }
  EXPECT_EQ(GetModuleHandleW(L"UA.dll"), nullptr) << "the library is unloaded";
  EXPECT_EQ(ShowAgreementDialog(L"Other", L"1", true), Agreement::DisagreedUnreported);

  std::filesystem::remove(library);
  std::filesystem::copy_file(ProgramFolder() / L"AgreementNothing.dll", library);
  EXPECT_EQ(ShowAgreementDialog(L"Queue", L"1", true), Agreement::DisagreedUnreported) << "there is no such entry";
  std::filesystem::remove(library);
  std::ofstream(library) << "no library";
  EXPECT_EQ(ShowAgreementDialog(L"Queue", L"1", true), Agreement::DisagreedUnreported);
  std::filesystem::remove(library);

  const std::string unloadable = "3 [UA] no agreement dialog: UA.dll cannot be loaded, error ";
  EXPECT_THAT(trace.Texts(),
              ElementsAre(unloadable + "126", "3 [UA] the agreement dialog answered 0",
                          "3 [UA] the agreement dialog answered 4", "3 [UA] the agreement dialog answered -1",
                          "3 [UA] the agreement dialog answered 0",
                          "3 [UA] no agreement dialog: UA.dll does not export ShowProtectionAgreementUI",
                          StartsWith(unloadable)));
}

}  // namespace
}  // namespace zt
