#pragma once

/// ztsnmp is an SNMPv1 manager library: get, get-next and set against printers and other agents, over IPv4 and IPv6.
///
/// A program starts the sockets layer, describes the agent, names the objects, and asks:
///
///   #include <ztsnmp/ztsnmp.h>
///
///   #include <cstdio>
///
///   int main() {
///     if (SNMPStartup() != 0) return 1;
///     Target target;
///     target.setAgentAddress("192.0.2.7");
///     ReqRespPDU pdu;
///     pdu.addVarBind(VarBind(OID("1.3.6.1.2.1.43.10.2.1.4.1.1")));
///     SNMPManager manager;
///     int status = manager.get(pdu, target);
///     puts(status == 0 ? pdu.getVarBind(0).getValue().toString() : SNMPManager::errorToString(status));
///     SNMPCleanup();
///   }
///
/// SNMPManager.h tells what can be asked; ReqRespPDU.h and VarBind.h how a question is put; Target.h who is asked;
/// the remaining headers are the values.

#include "IPAddress.h"
#include "IPXAddress.h"
#include "IPv6Address.h"
#include "Null.h"
#include "Numbers.h"
#include "OID.h"
#include "OctetString.h"
#include "PhysAddress.h"
#include "Printer.h"
#include "ReqRespPDU.h"
#include "SNMPManager.h"
#include "SNMPStatus.h"
#include "Target.h"
#include "TrapPDU.h"
#include "VarBind.h"
