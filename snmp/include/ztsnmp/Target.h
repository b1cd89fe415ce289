#pragma once

#include <array>
#include <optional>
#include <string>

#include "IPAddress.h"
#include "IPXAddress.h"
#include "IPv6Address.h"
#include "PhysAddress.h"

/// EnumAddressOrder says which addresses of a target are tried, and in which order.
enum EnumAddressOrder : int {
  OrderIPv4Only = 1,
  OrderIPv6Only = 2,
  OrderIPv4First = 4,  ///< the default
  OrderIPv6First = 8,
};

/// Target describes the agent that a request goes to: its addresses, the communities, how long to wait.
///
/// Either give it a host name or an address as text, which the first request resolves:
///   Target target; target.setAgentAddress("printer.example");
/// or give it addresses outright: `setIPAddress`, `setIPv6Address`, or a constructor. The agent's UDP port is 161.
///
/// A target is a plain value; copies are deep. Setters return 0 or a negative status and then keep the old value.
class ZTSNMP_API Target {
 public:
  static constexpr int kMaxIPv6Addresses = 10;

  Target();

  /// The constructors from an address and communities never fail: an address that is not valid is left out, so that the
  /// target is not valid (-23) until it gets one; a community that its setter refuses stays "public".
  explicit Target(const NetworkAddress& address);
  Target(const NetworkAddress& address, const char* readCommunity, const char* writeCommunity);

  Target(const Target& other);
  Target& operator=(const Target& other);
  virtual ~Target();

  [[nodiscard]] const IPAddress& getIPAddress() const noexcept;
  int setIPAddress(const IPAddress& address) noexcept;  ///< -3
  [[nodiscard]] const IPXAddress& getIPXAddress() const noexcept;
  int setIPXAddress(const IPXAddress& address) noexcept;  ///< -5
  [[nodiscard]] const PhysAddress& getPhysAddress() const noexcept;
  int setPhysAddress(const PhysAddress& address) noexcept;  ///< -11

  /// getIPv6Address returns one of `getIPv6AddressCount` addresses, from index 0; an empty one for any other index.
  [[nodiscard]] const IPv6Address& getIPv6Address(int index) const noexcept;
  [[nodiscard]] int getIPv6AddressCount() const noexcept;

  /// setIPv6Address appends an address to those held: -3 when it is not valid, -1 when ten are held.
  int setIPv6Address(const IPv6Address& address) noexcept;

  /// setRetryCount sets how often a wait is repeated, 0 to 5, else -18. The request is not sent again: an operation
  /// waits at most (retries + 1) times the timeout for each address. Default 0.
  int setRetryCount(int count) noexcept;
  [[nodiscard]] int getRetryCount() const noexcept;

  /// setTimeout sets the seconds of one wait, 1 to 60, else -19. Default 3.
  int setTimeout(int seconds) noexcept;
  [[nodiscard]] int getTimeout() const noexcept;

  /// setReadCommunity and setWriteCommunity take 1 to 25 characters, else -51, null included. Default "public". The
  /// write community goes with `set`, the read community with everything else.
  int setReadCommunity(const char* community) noexcept;
  int setWriteCommunity(const char* community) noexcept;
  [[nodiscard]] const char* getReadCommunity() const noexcept;
  [[nodiscard]] const char* getWriteCommunity() const noexcept;

  /// setAgentAddress stores a host name or address that the next request resolves; -52 for null. Addresses already held
  /// stay: start with a fresh target for another agent.
  int setAgentAddress(const char* text) noexcept;

  /// isAddressResolved returns whether `ResolveAddress` has stored an address for the agent text.
  [[nodiscard]] bool isAddressResolved() const noexcept;

  /// ResolveAddress turns the agent text into addresses: a numeric one is stored as it stands, a name is looked up (the
  /// last IPv4 address and up to ten IPv6 addresses are kept). 0 when at least one address was stored; -30 when the
  /// name has no address, -32 when the look-up failed, -1 when nothing usable came back; -52 without an agent text.
  int ResolveAddress() noexcept;

  /// isValid returns 0 when there is at least one valid address and both communities are there, else -23.
  [[nodiscard]] int isValid() const noexcept;

  [[nodiscard]] static int isValidIPv4Address(const char* text) noexcept;  ///< 1 or 0, by `IPAddress`
  [[nodiscard]] static int isValidIPv6Address(const char* text) noexcept;  ///< 1 or 0, by `IPv6Address`

  /// setIPAddressOrder, getFirstAddress and getNextAddress walk the addresses in the order wanted (EnumAddressOrder; a
  /// walk in any other order is empty). The addresses belong to the target; null ends the walk.
  /// With the default order, no IPv4 address and several IPv6 addresses, the walk visits the first of these twice and
  /// the last one never; a single one is visited once. Programs depend on it; choose OrderIPv6Only for a target with
  /// IPv6 addresses alone.
  void setIPAddressOrder(int order) noexcept;
  [[nodiscard]] NetworkAddress* getFirstAddress() noexcept;
  [[nodiscard]] NetworkAddress* getNextAddress() noexcept;

 private:
  friend class SNMPManager;
  [[nodiscard]] bool needsResolution() const noexcept;
  int setNetworkAddress(const NetworkAddress& address) noexcept;
  [[nodiscard]] NetworkAddress* validIPAddress() noexcept;
  [[nodiscard]] NetworkAddress* ipv6AddressAt(int index) noexcept;

  IPAddress ipAddress_;
  IPXAddress ipxAddress_;
  PhysAddress physAddress_;
  int retryCount_ = 0;
  int timeout_ = 3;
  std::string readCommunity_ = "public";
  std::string writeCommunity_ = "public";
  std::optional<std::string> agentAddress_;
  bool resolved_ = false;
  std::array<IPv6Address, kMaxIPv6Addresses> ipv6Addresses_;
  int ipv6AddressCount_ = 0;
  int order_ = OrderIPv4First;
  int position_ = 0;
};
