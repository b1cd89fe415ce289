#include "ModelFamily.h"

namespace zt {
namespace {

struct Fragment {
  std::string_view text;
  ModelFamily family;
};

// The first fragment that the model contains decides: the full prefixes stand before "MFP", which several families
// share, and the two-letter fragments, which may stand anywhere in a name, come last.
constexpr Fragment kFragments[] = {
    {"RV-", ModelFamily::RV},  {"DWB-", ModelFamily::DWB}, {"PHT-", ModelFamily::PHT}, {"PHZ-", ModelFamily::PHZ},
    {"MFP", ModelFamily::PHZ}, {"TJ", ModelFamily::DWB},   {"YB", ModelFamily::DWB},
};

}  // namespace

ModelFamily ClassifyModelFamily(std::string_view model) {
  for (const Fragment& fragment : kFragments) {
    if (model.find(fragment.text) != std::string_view::npos) return fragment.family;
  }
  return ModelFamily::Unknown;
}

std::string_view ModelFamilyName(ModelFamily family) {
  switch (family) {
    case ModelFamily::RV:
      return "RV";
    case ModelFamily::DWB:
      return "DWB";
    case ModelFamily::PHT:
      return "PHT";
    case ModelFamily::PHZ:
      return "PHZ";
    case ModelFamily::Unknown:
      break;
  }
  return {};
}

}  // namespace zt
