#include "Cases.h"

#include <net-snmp/net-snmp-config.h>
// net-snmp's headers want its configuration first.
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net-snmp/net-snmp-includes.h>
#include <netdb.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "FloorCodec.h"
#include "MessageCodec.h"
#include "ztsnmp/ztsnmp.h"

namespace {

using ztsnmp::MessageCodec;
using Message = std::vector<std::uint8_t>;

constexpr std::array<const char*, 10> kNames = {
    "1.3.6.1.2.1.43.11.1.1.9.1.1", "1.3.6.1.2.1.43.11.1.1.9.1.2", "1.3.6.1.2.1.43.11.1.1.9.1.3",
    "1.3.6.1.2.1.43.11.1.1.9.1.4", "1.3.6.1.2.1.43.11.1.1.8.1.1", "1.3.6.1.2.1.43.11.1.1.8.1.2",
    "1.3.6.1.2.1.43.11.1.1.8.1.3", "1.3.6.1.2.1.43.11.1.1.8.1.4", "1.3.6.1.2.1.43.10.2.1.4.1.1",
    "1.3.6.1.2.1.43.5.1.1.17.1",
};

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// The answer of an agent: numbers, or with `text` 20 bytes each, of so many names from the first.
Message answerOf(int count, bool text, int first = 0) {
  ReqRespPDU pdu;
  for (int i = 0; i < count; ++i) {
    VarBind binding{OID(kNames[static_cast<std::size_t>(first + i)])};
    if (text) {
      binding.setValue(OctetString("twenty bytes of text", 20));
    } else {
      binding.setValue(Integer(2920 + i));
    }
    pdu.addVarBind(binding);
  }
  MessageCodec::setHeader(pdu, PDUSetRequest, 0);
  Message message(MessageCodec::kMaxMessage);
  message.resize(static_cast<std::size_t>(MessageCodec::encodePacket(pdu, "public", message)));
  for (std::uint8_t& byte : message) {
    if (byte == 0xA3) {
      byte = 0xA2;
      break;
    }
  }
  return message;
}

// ---- ours

std::function<void()> oursEncode(int count) {
  auto pdu = std::make_shared<ReqRespPDU>();
  for (int i = 0; i < count; ++i) pdu->addVarBind(VarBind{OID(kNames[static_cast<std::size_t>(i)])});
  MessageCodec::setHeader(*pdu, PDUGetRequest, 0);
  return [pdu] {
    std::array<std::uint8_t, MessageCodec::kMaxMessage> out;
    require(MessageCodec::encodePacket(*pdu, "public", out) > 0, "ours encodes");
  };
}

/// Each round begins as after a request, with `Null` values, and its values are freed in the next.
std::function<void()> oursDecode(int count, bool text) {
  auto pdu = std::make_shared<ReqRespPDU>();
  for (int i = 0; i < count; ++i) pdu->addVarBind(VarBind{OID(kNames[static_cast<std::size_t>(i)])});
  return [pdu, message = answerOf(count, text), count] {
    for (int i = 0; i < count; ++i) pdu->getVarBind(static_cast<unsigned>(i)).setValue(Null());
    require(MessageCodec::decodePacket(message, *pdu) == 0, "ours decodes");
  };
}

/// A step of a walk: the name that came last goes out, and the answer brings another.
std::function<void()> oursStep() {
  auto pdu = std::make_shared<ReqRespPDU>();
  pdu->addVarBind(VarBind{OID(kNames[1])});
  MessageCodec::setHeader(*pdu, PDUGetNextRequest, 0);
  return [pdu, answers = std::array{answerOf(1, false, 0), answerOf(1, false, 1)}, next = 0U]() mutable {
    std::array<std::uint8_t, MessageCodec::kMaxMessage> out;
    require(MessageCodec::encodePacket(*pdu, "public", out) > 0, "ours asks for the next");
    require(MessageCodec::decodePacket(answers[next++ % 2], *pdu) == 0, "ours reads the next");
  };
}

void oursMakeName() { require(*OID(kNames[0]).getValue() != '\0', "ours makes a name"); }

// ---- net-snmp

struct FreePDU {
  void operator()(netsnmp_pdu* pdu) const { snmp_free_pdu(pdu); }
};

std::function<void()> netsnmpEncode(int count) {
  std::shared_ptr<netsnmp_pdu> pdu(snmp_pdu_create(SNMP_MSG_GET), FreePDU());
  pdu->version = SNMP_VERSION_1;
  pdu->community = static_cast<u_char*>(std::malloc(6));
  std::memcpy(pdu->community, "public", 6);
  pdu->community_len = 6;
  for (int i = 0; i < count; ++i) {
    oid name[MAX_OID_LEN];
    std::size_t length = MAX_OID_LEN;
    require(read_objid(kNames[static_cast<std::size_t>(i)], name, &length) != 0, "net-snmp reads the name");
    snmp_add_null_var(pdu.get(), name, length);
  }
  auto session = std::make_shared<netsnmp_session>();
  snmp_sess_init(session.get());
  session->version = SNMP_VERSION_1;
  return [pdu, session] {
    std::size_t room = 2048;
    auto* packet = static_cast<u_char*>(std::malloc(room));
    std::size_t offset = 0;
    require(snmp_build(&packet, &room, &offset, session.get(), pdu.get()) == 0, "net-snmp encodes");
    std::free(packet);
  };
}

std::function<void()> netsnmpDecode(int count, bool text) {
  return [message = answerOf(count, text)] {
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_RESPONSE);
    u_char community[64];
    std::size_t communityLength = sizeof(community);
    long version = 0;
    std::size_t length = message.size();
    u_char* rest =
        snmp_comstr_parse(const_cast<u_char*>(message.data()), &length, community, &communityLength, &version);
    require(rest != nullptr && snmp_pdu_parse(pdu, rest, &length) == 0, "net-snmp decodes");
    snmp_free_pdu(pdu);
  };
}

std::function<void()> netsnmpStep() {
  return [ask = netsnmpEncode(1), read = netsnmpDecode(1, false)] {
    ask();
    read();
  };
}

void netsnmpMakeName() {
  oid name[MAX_OID_LEN];
  std::size_t length = MAX_OID_LEN;
  require(read_objid(kNames[0], name, &length) != 0, "net-snmp makes a name");
}

// ---- the floor

std::function<void()> floorEncode(int count) {
  return [count] {
    std::array<std::uint8_t, 2048> out;
    require(floorEncodeGet(std::span(kNames).first(static_cast<std::size_t>(count)), out.data()) > 0,
            "the floor encodes");
  };
}

std::function<void()> floorDecodeCase(int count, bool text) {
  auto bindings = std::make_shared<std::vector<FloorBinding>>(static_cast<std::size_t>(count));
  return [message = answerOf(count, text), bindings] {
    require(floorDecode(message.data(), message.size(), *bindings), "the floor decodes");
  };
}

std::function<void()> floorStep() {
  auto binding = std::make_shared<FloorBinding>();
  std::strcpy(binding->name, kNames[1]);
  return [binding, answers = std::array{answerOf(1, false, 0), answerOf(1, false, 1)}, next = 0U]() mutable {
    std::array<std::uint8_t, 2048> out;
    const char* const name = binding->name;
    require(floorEncodeGet({&name, 1}, out.data()) > 0, "the floor asks for the next");
    const Message& answer = answers[next++ % 2];
    require(floorDecode(answer.data(), answer.size(), {binding.get(), 1}), "the floor reads the next");
  };
}

/// Without its MIB files and configuration, which nobody needs for numeric names.
void startNetsnmp() {
  setenv("MIBS", "", 1);
  setenv("SNMPCONFPATH", "/var/empty", 1);
  init_snmp("ztsnmp_bench");
}

// ---- over the network

void oursGet() {
  SNMPManager manager;
  Target target;
  target.setAgentAddress("127.0.0.1");
  ReqRespPDU pdu;
  pdu.addVarBind(VarBind{OID("1.3.6.1.4.1.53017.98.1")});
  require(manager.get(pdu, target) == 0, "ours gets");
}

void oursWalk() {
  SNMPManager manager;
  Target target;
  target.setAgentAddress("127.0.0.1");
  ReqRespPDU pdu;
  pdu.addVarBind(VarBind{OID(kWalkRoot)});
  for (int i = 0; i < kWalkRows; ++i) require(manager.getNext(pdu, target) == 0, "ours walks");
}

class NetsnmpSession {
 public:
  NetsnmpSession() {
    netsnmp_session session;
    snmp_sess_init(&session);
    session.version = SNMP_VERSION_1;
    session.peername = const_cast<char*>("127.0.0.1");
    session.community = reinterpret_cast<u_char*>(const_cast<char*>("public"));
    session.community_len = 6;
    session_ = snmp_sess_open(&session);
    require(session_ != nullptr, "net-snmp opens");
  }
  ~NetsnmpSession() { snmp_sess_close(session_); }

  /// The name becomes that of the answer.
  void ask(int type, oid* name, std::size_t& length) {
    netsnmp_pdu* pdu = snmp_pdu_create(type);
    snmp_add_null_var(pdu, name, length);
    netsnmp_pdu* answer = nullptr;
    require(snmp_sess_synch_response(session_, pdu, &answer) == STAT_SUCCESS && answer->errstat == 0, "net-snmp asks");
    length = answer->variables->name_length;
    std::memcpy(name, answer->variables->name, length * sizeof(oid));
    snmp_free_pdu(answer);
  }

 private:
  void* session_;
};

void netsnmpGet() {
  oid name[MAX_OID_LEN];
  std::size_t length = MAX_OID_LEN;
  read_objid("1.3.6.1.4.1.53017.98.1", name, &length);
  NetsnmpSession().ask(SNMP_MSG_GET, name, length);
}

void netsnmpWalk() {
  oid name[MAX_OID_LEN];
  std::size_t length = MAX_OID_LEN;
  read_objid(kWalkRoot, name, &length);
  NetsnmpSession session;
  for (int i = 0; i < kWalkRows; ++i) session.ask(SNMP_MSG_GETNEXT, name, length);
}

/// One exchange with nothing but what an operation has to do, as it makes and closes its own sockets: the two look-ups
/// (this machine's addresses, the agent's), socket, bind, send, wait, receive, close. What the library must do besides
/// is not here: non-blocking mode, the broadcast option, the wait before sending, the sender's address as text. The
/// request changes with each round, as in a walk.
void floorExchange(const char* askedName, std::uint8_t pduTag, char* answeredName) {
  ifaddrs* interfaces = nullptr;
  require(getifaddrs(&interfaces) == 0, "the floor lists");
  freeifaddrs(interfaces);
  addrinfo hints{};
  hints.ai_socktype = SOCK_DGRAM;
  hints.ai_flags = AI_NUMERICHOST;
  addrinfo* agent = nullptr;
  require(getaddrinfo("127.0.0.1", "161", &hints, &agent) == 0, "the floor resolves");
  const int handle = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
  sockaddr_in local{};
  local.sin_family = AF_INET;
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  require(bind(handle, reinterpret_cast<sockaddr*>(&local), sizeof(local)) == 0, "the floor binds");
  std::array<std::uint8_t, 2048> buffer;
  const std::size_t length = floorEncodeGet({&askedName, 1}, buffer.data());
  buffer[15] = pduTag;
  require(sendto(handle, buffer.data(), length, 0, agent->ai_addr, agent->ai_addrlen) > 0, "the floor sends");
  freeaddrinfo(agent);
  pollfd waiting{handle, POLLIN, 0};
  require(poll(&waiting, 1, 3000) == 1, "the floor waits");
  const auto received = recv(handle, buffer.data(), buffer.size(), 0);
  close(handle);
  std::array<FloorBinding, 1> bindings;
  require(received > 0 && floorDecode(buffer.data(), static_cast<std::size_t>(received), bindings),
          "the floor receives");
  std::strcpy(answeredName, bindings[0].name);
}

void floorGet() {
  char name[256];
  floorExchange("1.3.6.1.4.1.53017.98.1", 0xA0, name);
}

void floorWalk() {
  char name[256];
  std::strcpy(name, kWalkRoot);
  for (int i = 0; i < kWalkRows; ++i) floorExchange(name, 0xA1, name);
}

}  // namespace

std::vector<Case> codecCases() {
  startNetsnmp();
  std::vector<Case> cases;
  for (int count : {1, 10}) {
    const std::string what = "encode a get of " + std::to_string(count);
    cases.push_back({what, "ours", oursEncode(count)});
    cases.push_back({what, "netsnmp", netsnmpEncode(count)});
    cases.push_back({what, "floor", floorEncode(count)});
  }
  const struct {
    const char* what;
    int count;
    bool text;
  } answers[] = {
      {"decode an integer", 1, false}, {"decode a string of 20", 1, true}, {"decode 10 integers", 10, false}};
  for (const auto& row : answers) {
    cases.push_back({row.what, "ours", oursDecode(row.count, row.text)});
    cases.push_back({row.what, "netsnmp", netsnmpDecode(row.count, row.text)});
    cases.push_back({row.what, "floor", floorDecodeCase(row.count, row.text)});
  }
  cases.push_back({"a step of a walk, in memory", "ours", oursStep()});
  cases.push_back({"a step of a walk, in memory", "netsnmp", netsnmpStep()});
  cases.push_back({"a step of a walk, in memory", "floor", floorStep()});
  cases.push_back({"make a name of its text", "ours", oursMakeName});
  cases.push_back({"make a name of its text", "netsnmp", netsnmpMakeName});
  return cases;
}

std::vector<Case> networkCases() {
  startNetsnmp();
  return {
      {"get", "ours", oursGet},
      {"get", "netsnmp", netsnmpGet},
      {"get", "floor", floorGet},
      {"walk of 60 rows", "ours", oursWalk},
      {"walk of 60 rows", "netsnmp", netsnmpWalk},
      {"walk of 60 rows", "floor", floorWalk},
  };
}
