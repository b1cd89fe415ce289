// The floor of a run: a program that does nothing but the bare UDP round trips of one.
//
//   udp_floor COUNT    sends COUNT SNMP requests, one after the other, to 127.0.0.1:161, each from a socket of its own,
//   and
//                      waits for each answer; prints the microseconds that they took. Exit code 1 when an answer is
//                      missing.

#include <winsock2.h>
// after winsock2.h
#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

// SNMPv1 GetRequest of sysUpTime.0 with community "public" (RFC 1157, 4.1.2).
constexpr char request[] =
    "\x30\x26\x02\x01\x00\x04\x06public\xA0\x19\x02\x01\x00\x02\x01\x00\x02\x01\x00\x30\x0E\x30\x0C\x06\x08\x2B\x06\x01"
    "\x02"
    "\x01\x01\x03\x00\x05\x00";

bool RoundTrip() {
  const SOCKET socket = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
  sockaddr_in agent = {};
  agent.sin_family = AF_INET;
  agent.sin_port = htons(161);
  agent.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  sendto(socket, request, sizeof request - 1, 0, reinterpret_cast<const sockaddr*>(&agent), sizeof agent);
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(socket, &readable);
  timeval patience = {3, 0};
  char answer[2048];
  const bool answered =
      select(0, &readable, nullptr, nullptr, &patience) == 1 && recv(socket, answer, sizeof answer, 0) > 0;
  closesocket(socket);
  return answered;
}

}  // namespace

int main(int count, char** arguments) {
  const int trips = count > 1 ? std::atoi(arguments[1]) : 1;
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return 1;
  LARGE_INTEGER frequency;
  LARGE_INTEGER start;
  LARGE_INTEGER end;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&start);
  int answered = 0;
  while (answered < trips && RoundTrip()) ++answered;
  QueryPerformanceCounter(&end);
  WSACleanup();
  std::printf("%lld\n", (end.QuadPart - start.QuadPart) * 1000000 / frequency.QuadPart);
  return answered == trips ? 0 : 1;
}
