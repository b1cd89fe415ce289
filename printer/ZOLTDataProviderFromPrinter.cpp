#include "ZOLTDataProviderFromPrinter.h"

#include <new>
#include <utility>

#include "PPAInformation.h"
#include "Trace.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

constexpr std::uint32_t kPollPause = 1000;
constexpr std::size_t kLongestCodes = 1000;
constexpr const char* kProtectionOn = "@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n";
constexpr const char* kProtectionOff = "@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n";

}  // namespace

ZOLTDataProviderFromPrinter::ZOLTDataProviderFromPrinter(std::wstring queueName, QueueServices services)
    : queueName_(std::move(queueName)), services_(std::move(services)), printer_(services_.createPrinter(queueName_)) {
  if (!printer_) {
    ZT_TRACE(Error, "Can't get address from QName : " << queueName_ << "!!! Bye~");
  } else if (!Succeeded(printer_->GetPortAddress(printerAddress_))) {
    ZT_TRACE(Error, "Can't get address from " << queueName_ << "!!! Bye~");
  } else {
    printerAddressNarrow_ = ToNarrow(printerAddress_);
  }
}

bool ZOLTDataProviderFromPrinter::Initialize(bool checkSupport) {
  if (!printer_) {
    ZT_TRACE(Information, "printer invalid");
    return false;
  }
  if (initialised_) {
    ZT_TRACE(Information, "the printer has been already initialized.");
  } else if (!Succeeded(printer_->Open())) {
    ZT_TRACE(Information, "failed to initialize printer");
    return false;
  }
  initialised_ = true;
  if (!checkSupport) return true;

  ZT_TRACE(Information, "Checking ZOLT support from device...");
  if (printer_->IsZOLTSupported() == HResult::False) {
    ZT_TRACE(Information, "ZOLT is not supported!");
    return false;
  }
  return true;
}

bool ZOLTDataProviderFromPrinter::GetSerialNumber(std::string& serialNumber) {
  if (!IsReady()) return false;
  ZT_TRACE(Information, "Get Serial number...");
  if (!Succeeded(printer_->GetSerialNumber(serialNumber))) {
    ZT_TRACE(Error, "Serial Number is missing!!!");
    return false;
  }
  return serialNumber != "MPS-MODE";
}

bool ZOLTDataProviderFromPrinter::WaitForJobs(int maximumPolls, bool& jobsPending) {
  ZT_TRACE(Information, "Wait job finishes...");
  jobsPending = true;
  for (int pollsLeft = maximumPolls;; --pollsLeft) {
    const std::int32_t jobs = services_.countJobs(queueName_);
    if (jobs < 0) {
      ZT_TRACE(Information, "- job break...");
      return false;
    }
    if (jobs == 0) {
      ZT_TRACE(Information, "no job break...");
      jobsPending = false;
      return true;
    }
    if (pollsLeft <= 1) {
      ZT_TRACE(Information, "timeout...");
      return true;
    }
    services_.pause(kPollPause);
  }
}

bool ZOLTDataProviderFromPrinter::CollectZOLT(ZOLTInformation& record) {
  ZT_TRACE(Information, "Start collecting...");
  if (!IsReady()) return false;
  if (!sbxDocument_.empty()) record.SetDocument(sbxDocument_);
  const HResult result = Collect([&] { return printer_->GetZOLTInformation(record, errorText_); });
  record.SetFromUniversalDriver(printer_->IsUniversalDriver());
  ZT_TRACE(Information, "End collecting...");
  TraceCodes(result);
  if (result != HResult::Ok) return false;
  GetHostVersion(record);
  return true;
}

bool ZOLTDataProviderFromPrinter::CollectSBX(PPAInformation& record) {
  ZT_TRACE(Information, "Start SBX collecting...");
  if (!IsReady()) return false;
  if (!sbxDocument_.empty()) return true;

  const HResult result = Collect([&] { return printer_->GetPPAInformation(record, errorText_); });
  ZT_TRACE(Information, "End SBX collecting...");
  TraceCodes(result);
  if (!Succeeded(result)) return false;
  std::string text;
  if (Succeeded(printer_->GetModelName(text))) record.SetModelName(text);
  if (Succeeded(printer_->GetSerialNumber(text))) record.SetSerialNumber(text);
  if (Succeeded(printer_->GetCountryIndex(text))) record.SetCountryIndex(text);
  sbxDocument_ = record.Document().Text();
  return true;
}

bool ZOLTDataProviderFromPrinter::CheckSBXSupport(ProtectionState* state) {
  if (!IsReady() || !state) return false;
  WriteDebug("Checking SBX support from device...");
  if (printer_->GetSBXState(state) == HResult::False) {
    ZT_TRACE(Information, "SBX is not supported!");
    return false;
  }
  WriteDebug((TextBuilder() << "[ZT] SBX support value = " << static_cast<std::uint32_t>(*state)).Take());
  return true;
}

bool ZOLTDataProviderFromPrinter::SendRawToQueue(const char* text) {
  return text && services_.sendRawJob(queueName_, text);
}

bool ZOLTDataProviderFromPrinter::SetProtection(bool on) {
  if (!IsReady()) return false;
  if (!printer_->IsUSB()) {
    // The same text for off, on purpose.
    ZT_TRACE(Information, "[ZT] Protection On via the queue");
    return SendRawToQueue(on ? kProtectionOn : kProtectionOff);
  }
  WriteDebug("[ZT] Protection On using vendor command : USB");
  if (!Succeeded(printer_->SetProtection(on))) return false;
  // Spelled so on purpose: it is what support looks for.
  WriteDebug("[ZT] Protection On using vendor command :USCCESS");
  return true;
}

bool ZOLTDataProviderFromPrinter::GetModelName(std::string& modelName) {
  if (!IsReady()) return false;
  ZT_TRACE(Information, "Get ModelName...");
  if (Succeeded(printer_->GetModelName(modelName))) return true;
  ZT_TRACE(Error, "ModelName is missing!!!");
  return false;
}

bool ZOLTDataProviderFromPrinter::GetTonerLife(std::uint32_t* tonerLife, std::uint32_t* changeCount) {
  if (!IsReady() || !tonerLife || !changeCount) return false;
  ZT_TRACE(Information, "Get  toner life information and if it change...");
  if (Succeeded(printer_->GetPageCounters(*tonerLife, *changeCount))) return true;
  ZT_TRACE(Error, " toner life information is missing!!!");
  return false;
}

bool ZOLTDataProviderFromPrinter::GetHostVersion(ReportRecord& record) {
  if (!IsReady()) return false;
  const std::optional<std::string> version = services_.readHostVersion();
  if (!version) return false;
  record.SetHostVersion(*version);
  return true;
}

bool ZOLTDataProviderFromPrinter::GetCountryIndex(std::string& countryIndex) {
  if (!IsReady()) return false;
  WriteDebug("[ZT] Get country Index from ext.");
  // Only the answer "no" counts as one, on purpose; a printer without an index fails, and its text stays as it was.
  if (printer_->GetCountryIndex(countryIndex) == HResult::False) {
    ZT_TRACE(Information, "[ZT] Country Index from ext not supported!");
    return false;
  }
  WriteDebug((TextBuilder() << "[ZT]  Country Index from ext = " << countryIndex).Take());
  return true;
}

bool ZOLTDataProviderFromPrinter::ExtendedIDContains(std::string_view text) {
  if (!IsReady()) return false;
  WriteDebug("[ZT] Get device ID Ext.");
  std::string extendedID;
  // A failure, on purpose, is searched like an empty text.
  if (printer_->GetExtendedDeviceID(extendedID) == HResult::False) {
    ZT_TRACE(Information, "[ZT] Failed get device id ext");
    return false;
  }
  return extendedID.rfind(text) != std::string::npos;
}

bool ZOLTDataProviderFromPrinter::IsReady() const {
  if (printer_ && initialised_) return true;
  ZT_TRACE(Information, (printer_ ? "failed to initialize printer" : "printer invalid"));
  return false;
}

HResult ZOLTDataProviderFromPrinter::Collect(const std::function<HResult()>& collection) {
  try {
    return collection();
  } catch (const std::bad_alloc&) {
    errorText_ = "/no memory";  // short enough to need none
    return HResult::Fail;
  }
}

void ZOLTDataProviderFromPrinter::TraceCodes(HResult result) {
  // The codes may hold a whole document that was no XML.
  const std::string codes = std::exchange(errorText_, {}).substr(0, kLongestCodes);
  if (!Succeeded(result)) {
    ZT_TRACE(Warning, "failed to collect from " << queueName_ << " : " << codes);
  } else if (!codes.empty()) {
    ZT_TRACE(Information, "collected with gaps from " << queueName_ << " : " << codes);
  }
}

}  // namespace zt
