#pragma once

#include <string>
#include <string_view>

#include "IniText.h"

namespace zt {

// KVFLocalSetting is a settings file of sections, keys and values in the common application-data folder, held in
// memory: loaded once, and written back on destruction when a value was set. Names and values are bytes.
class KVFLocalSetting {
 public:
  // The store named "ZT" is the file "ZT.ini" in "Velnora\Printer" under the common application data. The constructor
  // creates that folder. A store without a name, or without that folder, has no file.
  explicit KVFLocalSetting(std::string_view name = {});
  KVFLocalSetting(const KVFLocalSetting&) = delete;
  KVFLocalSetting& operator=(const KVFLocalSetting&) = delete;

  // The destructor saves what was set; a failure is traced and the values are lost.
  virtual ~KVFLocalSetting();

  // Load reads the file, in place of what the store holds. True, and empty, when there is nothing to open for reading:
  // no file yet, or a folder of that name. False, and empty, when the store cannot be used: it has no path, or the file
  // cannot be written, is open elsewhere, cannot be read to its end, or is larger than 16 MiB.
  bool Load();

  // CanBeKept reports whether what is set can reach a file: there is one, or a probe, which leaves nothing behind, can
  // create it. Load has tried whether a file that is there can be written.
  bool CanBeKept() const;

  // GetValue returns whether the key is there; if not, `text` keeps its content.
  bool GetValue(std::string_view section, std::string_view key, std::string& text) const;
  void SetValue(std::string_view section, std::string_view key, std::string_view text);

  // Save writes the whole store over the beginning of the file, which is created if need be, with full access for
  // everyone. Bytes of a longer old file stay behind the new text; what Load reads first, the new text, holds. False
  // when the file cannot be written; one that finds no room for more bytes stays as it was.
  bool Save(const std::wstring& path) const;

  // CreateSettingsFile makes sure that the file exists, with full access for everyone where it is new. Its content is
  // left alone.
  void CreateSettingsFile() const;

  // DeleteSettingsFile removes the file; false, with a trace line, when that fails.
  bool DeleteSettingsFile();

  // Path of the file; empty for a store that has none.
  const std::wstring& Path() const { return path_; }

 private:
  std::wstring folder_;
  std::wstring path_;
  bool dirty_ = false;
  IniSections sections_;
};

}  // namespace zt
