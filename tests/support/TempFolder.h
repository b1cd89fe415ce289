#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace zt {

// TempFolder is an empty folder of a test's own, removed with what it holds at the end.
class TempFolder {
 public:
  TempFolder() {
    static int count = 0;
    // The folder's name carries the address of a local, too: test programs run side by side.
    folder_ = std::filesystem::temp_directory_path() /
              ("zt-test-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "-" +
               std::to_string(std::filesystem::file_time_type::clock::now().time_since_epoch().count()) + "-" +
               std::to_string(++count));
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
