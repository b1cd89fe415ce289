#pragma once

#include "Diagnosis.h"
#include "PrinterChoice.h"

namespace zt {

// DescribeComputer begins a diagnosis: the time, the versions of Windows and of this program, and the chosen printer,
// which is null without one.
DiagnosisSection DescribeComputer(const PrinterChoice* printer);

}  // namespace zt
