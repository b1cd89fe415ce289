#include "ztsnmp/Target.h"

#include <cstring>
#include <new>
#include <vector>

#include "OwnedText.h"
#include "Sockets.h"

namespace {

constexpr int kMaxRetryCount = 5;
constexpr int kMaxTimeout = 60;
constexpr std::size_t kMaxCommunityLength = 25;
constexpr const char* kAgentPort = "161";

bool isCommunityLength(std::size_t length) { return length >= 1 && length <= kMaxCommunityLength; }

int storeCommunity(std::string& community, const char* text) {
  if (text == nullptr || !isCommunityLength(std::strlen(text))) return StatusInvalidCommunity;
  return ztsnmp::assignText(community, text, std::strlen(text)) ? StatusSuccess : StatusGeneralError;
}

template <typename Address>
int storeAddress(Address& slot, const Address& address) {
  if (const int status = address.isValid(); status != StatusSuccess) return status;
  return slot.setValue(address.getValue());
}

}  // namespace

Target::Target() = default;
Target::Target(const Target& other) = default;
Target& Target::operator=(const Target& other) = default;
Target::~Target() = default;

Target::Target(const NetworkAddress& address) { setNetworkAddress(address); }

Target::Target(const NetworkAddress& address, const char* readCommunity, const char* writeCommunity) : Target(address) {
  setReadCommunity(readCommunity);
  setWriteCommunity(writeCommunity);
}

const IPAddress& Target::getIPAddress() const noexcept { return ipAddress_; }
const IPXAddress& Target::getIPXAddress() const noexcept { return ipxAddress_; }
const PhysAddress& Target::getPhysAddress() const noexcept { return physAddress_; }
int Target::getIPv6AddressCount() const noexcept { return ipv6AddressCount_; }
int Target::getRetryCount() const noexcept { return retryCount_; }
int Target::getTimeout() const noexcept { return timeout_; }
const char* Target::getReadCommunity() const noexcept { return readCommunity_.c_str(); }
const char* Target::getWriteCommunity() const noexcept { return writeCommunity_.c_str(); }
bool Target::isAddressResolved() const noexcept { return resolved_; }
void Target::setIPAddressOrder(int order) noexcept { order_ = order; }
bool Target::needsResolution() const noexcept { return agentAddress_ && !resolved_; }

int Target::setIPAddress(const IPAddress& address) noexcept { return storeAddress(ipAddress_, address); }
int Target::setIPXAddress(const IPXAddress& address) noexcept { return storeAddress(ipxAddress_, address); }
int Target::setPhysAddress(const PhysAddress& address) noexcept { return storeAddress(physAddress_, address); }

const IPv6Address& Target::getIPv6Address(int index) const noexcept {
  static const IPv6Address kNone;
  return index >= 0 && index < ipv6AddressCount_ ? ipv6Addresses_[static_cast<std::size_t>(index)] : kNone;
}

int Target::setIPv6Address(const IPv6Address& address) noexcept {
  if (const int status = address.isValid(); status != StatusSuccess) return status;
  if (ipv6AddressCount_ == kMaxIPv6Addresses) return StatusGeneralError;
  const int status = ipv6Addresses_[static_cast<std::size_t>(ipv6AddressCount_)].setValue(address.getValue());
  if (status == StatusSuccess) ++ipv6AddressCount_;
  return status;
}

int Target::setNetworkAddress(const NetworkAddress& address) noexcept {
  switch (address.getAddressType()) {
    case AddressTypeIP:
      return setIPAddress(static_cast<const IPAddress&>(address));
    case AddressTypeIPX:
      return setIPXAddress(static_cast<const IPXAddress&>(address));
    case AddressTypePhys:
      return setPhysAddress(static_cast<const PhysAddress&>(address));
    case AddressTypeIPv6:
      return setIPv6Address(static_cast<const IPv6Address&>(address));
  }
  return StatusGeneralError;
}

int Target::setRetryCount(int count) noexcept {
  if (count < 0 || count > kMaxRetryCount) return StatusInvalidRetryCount;
  retryCount_ = count;
  return StatusSuccess;
}

int Target::setTimeout(int seconds) noexcept {
  if (seconds < 1 || seconds > kMaxTimeout) return StatusInvalidTimeout;
  timeout_ = seconds;
  return StatusSuccess;
}

int Target::setReadCommunity(const char* community) noexcept { return storeCommunity(readCommunity_, community); }
int Target::setWriteCommunity(const char* community) noexcept { return storeCommunity(writeCommunity_, community); }

int Target::setAgentAddress(const char* text) noexcept try {
  if (text == nullptr) return StatusNoAddressInTarget;
  agentAddress_ = text;
  resolved_ = false;
  return StatusSuccess;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int Target::ResolveAddress() noexcept try {
  if (!agentAddress_) return StatusNoAddressInTarget;
  const char* const text = agentAddress_->c_str();
  const auto store = [this](const char* numeric) {
    const bool stored = isValidIPv4Address(numeric) != 0   ? ipAddress_.setValue(numeric) == StatusSuccess
                        : isValidIPv6Address(numeric) != 0 ? setIPv6Address(IPv6Address(numeric)) == StatusSuccess
                                                           : false;
    resolved_ = resolved_ || stored;
  };

  if (isValidIPv4Address(text) != 0 || isValidIPv6Address(text) != 0) {
    store(text);
  } else {
    std::vector<ztsnmp::SocketAddress> found;
    switch (ztsnmp::resolve(text, kAgentPort, found)) {
      case ztsnmp::LookupResult::NoData:
        return StatusCreateSocketError;
      case ztsnmp::LookupResult::Failed:
        return StatusInitializationError;
      case ztsnmp::LookupResult::Found:
        break;
    }
    for (const auto& address : found) {
      const std::string numeric = ztsnmp::numericText(address);
      if (numeric.empty()) break;
      store(numeric.c_str());
    }
  }
  return resolved_ ? StatusSuccess : StatusGeneralError;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int Target::isValid() const noexcept {
  bool reachable = ipAddress_.isValid() == StatusSuccess || ipxAddress_.isValid() == StatusSuccess ||
                   physAddress_.isValid() == StatusSuccess;
  for (int i = 0; i < ipv6AddressCount_ && !reachable; ++i) reachable = getIPv6Address(i).isValid() == StatusSuccess;
  const bool valid = reachable && isCommunityLength(readCommunity_.size()) && isCommunityLength(writeCommunity_.size());
  return valid ? StatusSuccess : StatusInvalidTarget;
}

int Target::isValidIPv4Address(const char* text) noexcept {
  return IPAddress::isValidAddress(text) == StatusSuccess ? 1 : 0;
}

int Target::isValidIPv6Address(const char* text) noexcept {
  return IPv6Address::isValidAddress(text) == StatusSuccess ? 1 : 0;
}

NetworkAddress* Target::validIPAddress() noexcept {
  return ipAddress_.isValid() == StatusSuccess ? &ipAddress_ : nullptr;
}

NetworkAddress* Target::ipv6AddressAt(int index) noexcept {
  return index < ipv6AddressCount_ ? &ipv6Addresses_[static_cast<std::size_t>(index)] : nullptr;
}

NetworkAddress* Target::getFirstAddress() noexcept {
  NetworkAddress* const ipv4 = validIPAddress();
  NetworkAddress* const ipv6 = ipv6AddressAt(0);
  NetworkAddress* first = nullptr;
  switch (order_) {
    case OrderIPv4Only:
      first = ipv4;
      break;
    case OrderIPv6Only:
      first = ipv6;
      break;
    case OrderIPv4First:
      first = ipv4 != nullptr ? ipv4 : ipv6;
      break;
    case OrderIPv6First:
      first = ipv6 != nullptr ? ipv6 : ipv4;
      break;
    default:
      break;
  }
  position_ = first != nullptr ? 1 : 0;
  return first;
}

NetworkAddress* Target::getNextAddress() noexcept {
  if (position_ == 0) return nullptr;
  NetworkAddress* next = nullptr;
  switch (order_) {
    case OrderIPv6Only:
      next = ipv6AddressAt(position_);
      break;
    case OrderIPv4First: {
      // Without an IPv4 address this starts one place too early and ends one too early, on purpose: programs depend
      // on the walk as it is.
      const int limit = validIPAddress() != nullptr ? position_ - 1 : position_;
      if (limit < ipv6AddressCount_) next = ipv6AddressAt(position_ - 1);
      break;
    }
    case OrderIPv6First:
      next = ipv6AddressAt(position_);
      // The place behind the IPv6 addresses is that of the IPv4 address; a walk that began with it is over.
      if (next == nullptr && position_ == ipv6AddressCount_) next = validIPAddress();
      break;
    default:
      break;
  }
  if (next != nullptr) ++position_;
  return next;
}
