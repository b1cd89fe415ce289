#pragma once

#include <memory>
#include <string>

namespace tinyxml2 {
class XMLDocument;
class XMLElement;
}  // namespace tinyxml2

namespace zt {

// DeviceDocument is the report document that a printer delivers itself: its text and, from the first time that somebody
// asks for it, the tree that the text is parsed into. A tree may take sixty times the memory of its text.
class DeviceDocument {
 public:
  DeviceDocument();
  DeviceDocument(std::string text);
  DeviceDocument(DeviceDocument&& other) noexcept;
  DeviceDocument& operator=(DeviceDocument&& other) noexcept;
  ~DeviceDocument();

  const std::string& Text() const { return text_; }

  // Tree returns the parsed text, which belongs to this object; null for a text that is no XML (see ParseXml).
  const tinyxml2::XMLDocument* Tree() const;

  // DropTree gives the memory of the tree back, once the document has been read. Tree would parse anew.
  void DropTree();

 private:
  std::string text_;
  mutable std::unique_ptr<tinyxml2::XMLDocument> tree_;
  mutable bool isParsed_ = false;
};

}  // namespace zt
