#include "AgreementDialog.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ProgramPath.h"
#include "TempFolder.h"
#include "TraceCapture.h"

namespace zt {
namespace {

// The library that the build lays beside this program answers by the language; see AgreementAnswers.cpp.
TEST(AgreementDialogTest, OnlyTheLibraryOfTheProgramsFolderIsAsked) {
  const std::filesystem::path folder = std::filesystem::path(ProgramPath()).parent_path();
  const std::filesystem::path library = folder / L"UA.dll";
  const auto ask = [](const wchar_t* language) { return ShowAgreementDialog(L"Queue", language, true); };
  const TempFolder current;
  const TraceCapture trace;
  std::filesystem::remove(library);
  std::filesystem::copy_file(folder / L"AgreementAnswers.dll", current.Path(L"UA.dll"));
  std::filesystem::current_path(current.Path(L""));
  EXPECT_EQ(ask(L"1"), Agreement::DisagreedUnreported) << "the library of the current folder was asked";

  std::filesystem::copy_file(folder / L"AgreementAnswers.dll", library);
  EXPECT_EQ(ask(L"1"), Agreement::Agreed);
  EXPECT_EQ(ask(L"2"), Agreement::Disagreed);
  for (const wchar_t* other : {L"3", L"0", L"4"}) EXPECT_EQ(ask(other), Agreement::DisagreedUnreported);
  EXPECT_TRUE(std::filesystem::remove(library)) << "the library is unloaded";

  std::filesystem::copy_file(folder / L"AgreementNothing.dll", library);
  EXPECT_EQ(ask(L"1"), Agreement::DisagreedUnreported) << "there is no such entry";
  std::ofstream(library) << "no library";
  EXPECT_EQ(ask(L"1"), Agreement::DisagreedUnreported);
  std::filesystem::remove(library);

  const std::string unloadable = "3 [UA] no agreement dialog: UA.dll cannot be loaded, error ";
  const std::string answered = "3 [UA] the agreement dialog answered ";
  EXPECT_THAT(trace.Texts(),
              testing::ElementsAre(unloadable + "126", answered + "0", answered + "4",
                                   "3 [UA] no agreement dialog: UA.dll does not export ShowProtectionAgreementUI",
                                   testing::StartsWith(unloadable)));
}

}  // namespace
}  // namespace zt
