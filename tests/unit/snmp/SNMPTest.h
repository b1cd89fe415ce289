#pragma once

#include <gtest/gtest.h>

#include "ztsnmp/ztsnmp.h"

/// SNMPTest is what a test of operations begins with.
class SNMPTest : public testing::Test {
 protected:
  SNMPTest() { EXPECT_EQ(SNMPStartup(), 0); }
  ~SNMPTest() override { SNMPCleanup(); }

  SNMPManager manager;
  ReqRespPDU pdu;
  Target target;
};
