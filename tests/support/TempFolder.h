#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

namespace zt {

// TempFolder is an empty folder of a test's own, removed with what it holds at the end.
class TempFolder {
 public:
  TempFolder() {
    // Test programs run side by side.
    folder_ = std::filesystem::temp_directory_path() / ("zt-test-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directories(folder_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::wstring Path(std::wstring_view name) const { return (folder_ / name).wstring(); }

  bool Exists(std::wstring_view name) const { return std::filesystem::exists(folder_ / name); }

  void Write(std::wstring_view name, std::string_view bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
  }

  std::string Read(std::wstring_view name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace zt
