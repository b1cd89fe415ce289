#pragma once

#include <string_view>

#include "ServerAnswer.h"

namespace zt {

// The readers of the report server's XML answers. The root element is `root`; each value is the text of one of its
// child elements, and an element without text counts as absent. Values go into `answer`, whose other keys stay.

// ReadDateAnswer reads the answer to a date check. False, nothing set, when the text is no XML or has no `root`.
[[nodiscard]] bool ReadDateAnswer(std::string_view xml, ServerAnswer& answer);

// ReadSBXAnswer reads the answer to a product-protection check: the toner limit is that of the first Model that is
// named `modelName`, or else the server's general one. False, nothing set, when the text is no XML or has no `root`.
[[nodiscard]] bool ReadSBXAnswer(std::string_view xml, std::string_view modelName, ServerAnswer& answer);

enum class UploadResult { Missing, Success, NoMoreService, Unknown };

// ReadUploadResult reads the verdict on an upload; Missing also when the text is no XML. Comparisons are exact.
[[nodiscard]] UploadResult ReadUploadResult(std::string_view xml);

}  // namespace zt
