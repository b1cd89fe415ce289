#include "ztsnmp/Printer.h"

Printer::Printer() = default;
Printer::Printer(const NetworkAddress& address) : Target(address) {}
Printer::Printer(const Printer& other) = default;
Printer& Printer::operator=(const Printer& other) = default;
Printer::~Printer() = default;

const OctetString& Printer::getName() const noexcept { return name_; }
const OctetString& Printer::getDescription() const noexcept { return description_; }
const Integer& Printer::getStatus() const noexcept { return status_; }
