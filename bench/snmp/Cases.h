#pragma once

#include <functional>
#include <string>
#include <vector>

/// Case is one thing that is measured, done by one of the libraries ("ours", "netsnmp", "floor").
struct Case {
  std::string what;
  std::string who;
  std::function<void()> run;
};

/// codecCases encode requests and decode answers in memory; networkCases ask the agent on 127.0.0.1, port 161, which
/// serves 60 rows below kWalkRoot.
std::vector<Case> codecCases();
std::vector<Case> networkCases();

constexpr const char* kWalkRoot = "1.3.6.1.4.1.53017.98";
constexpr int kWalkRows = 60;
