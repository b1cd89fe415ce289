#include "ProtectionRules.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

// What the runs' scenarios do not reach.
TEST(ProtectionRulesTest, Edges) {
  struct Country {
    const char* list;
    const char* country;
    bool listed;
  };
  for (const Country& row :
       {Country{"24, 59", "59", true}, Country{" 24 ,\t59", "24", true}, Country{"24, 59", "4, 5", false},
        Country{"", "", false}, Country{",,24,", "24", true}, Country{"124", "24", false}}) {
    EXPECT_EQ(IsCountryListed(row.list, row.country), row.listed) << row.list;
  }
  EXPECT_FALSE(IsTonerFresh(100));
  struct Limit {
    std::uint32_t life;
    int limit;
    bool below;
  };
  for (const Limit& row : {Limit{149, 150, true}, Limit{150, 150, false}, Limit{149, 0, false}, Limit{149, -1, true}}) {
    EXPECT_EQ(IsBelowLimit(row.life, {7, "", row.limit}), row.below) << row.life << " " << row.limit;
  }
}

}  // namespace
}  // namespace zt
