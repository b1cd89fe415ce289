#pragma once

#include <cstdint>
#include <string_view>

namespace zt {

// ModelFamily groups the printer models that answer alike.
enum class ModelFamily : std::uint32_t { Unknown = 0, RV = 1, DWB = 2, PHT = 3, PHZ = 4 };

// ClassifyModelFamily places a model name in its family by the fragments that it contains (case-sensitive).
ModelFamily ClassifyModelFamily(std::string_view model);

// ModelFamilyName returns "RV", "DWB", "PHT" or "PHZ", and an empty text for Unknown.
std::string_view ModelFamilyName(ModelFamily family);

}  // namespace zt
