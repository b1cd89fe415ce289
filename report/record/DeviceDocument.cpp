#include "DeviceDocument.h"

#include <utility>

#include "Xml.h"

namespace zt {

DeviceDocument::DeviceDocument() = default;
DeviceDocument::DeviceDocument(std::string text) : text_(std::move(text)) {}
DeviceDocument::DeviceDocument(DeviceDocument&& other) noexcept = default;
DeviceDocument& DeviceDocument::operator=(DeviceDocument&& other) noexcept = default;
DeviceDocument::~DeviceDocument() = default;

const tinyxml2::XMLDocument* DeviceDocument::Tree() const {
  if (!isParsed_) {
    auto tree = std::make_unique<tinyxml2::XMLDocument>();
    if (ParseXml(text_, *tree)) tree_ = std::move(tree);
    isParsed_ = true;
  }
  return tree_.get();
}

void DeviceDocument::DropTree() {
  tree_.reset();
  isParsed_ = false;
}

}  // namespace zt
