// supplies HOST: shows the supplies of a printer as a table (Printer MIB, RFC 3805, prtMarkerSuppliesTable).

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "Text.h"
#include "Walk.h"

namespace {

const std::string kSupplies = "1.3.6.1.2.1.43.11.1.1";
constexpr const char* kDescription = ".6";
constexpr const char* kCapacity = ".8";
constexpr const char* kLevel = ".9";

struct Supply {
  std::string description;
  int capacity = 0;
  int level = 0;
};

/// The numbers of a row's index, such as ".1.10". Rows are sorted by them; as a text ".1.10" would precede ".1.2".
std::vector<unsigned long> numbersOf(const std::string& index) {
  std::vector<unsigned long> numbers;
  for (const char* at = index.c_str(); *at == '.';) {
    char* behind = nullptr;
    numbers.push_back(std::strtoul(at + 1, &behind, 10));
    at = behind;
  }
  return numbers;
}

int numberOf(const VarBind& binding) {
  const SNMPDataType& value = binding.getValue();
  return value.getDataType() == DataTypeInteger ? static_cast<const Integer&>(value).getValue() : 0;
}

/// "73%", or what a level below 0 stands for.
std::string levelText(const Supply& supply) {
  if (supply.level == -3) return "some";
  if (supply.level < 0 || supply.capacity <= 0) return "unknown";
  return std::to_string(static_cast<long long>(supply.level) * 100 / supply.capacity) + "%";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: supplies HOST\n", stderr);
    return 2;
  }
  Target target;
  target.setAgentAddress(argv[1]);

  if (SNMPStartup() != 0) return 1;
  SNMPManager manager;
  std::map<std::vector<unsigned long>, Supply> supplies;
  bool complete = true;
  const auto readColumn = [&](const char* column, auto store) {
    const std::string root = kSupplies + column;
    complete = complete && walk(manager, target, root, kMostRows, [&](const VarBind& binding) {
                 store(supplies[numbersOf(binding.getOID().getValue() + root.size())], binding);
               });
  };
  readColumn(kDescription,
             [](Supply& row, const VarBind& cell) { row.description = blanked(cell.getValue().toString()); });
  readColumn(kCapacity, [](Supply& row, const VarBind& cell) { row.capacity = numberOf(cell); });
  readColumn(kLevel, [](Supply& row, const VarBind& cell) { row.level = numberOf(cell); });
  SNMPCleanup();

  if (!complete) return 1;
  std::printf("%-32s %8s %8s %8s\n", "SUPPLY", "LEVEL", "OF", "LEFT");
  for (const auto& [index, supply] : supplies) {
    std::printf("%-32s %8d %8d %8s\n", supply.description.c_str(), supply.level, supply.capacity,
                levelText(supply).c_str());
  }
  return 0;
}
