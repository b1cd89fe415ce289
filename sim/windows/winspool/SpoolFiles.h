#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>

// The files of the simulated spooler. Its script is the file named by the environment variable ZT_SPOOL_SCRIPT, else
// winspool.ini beside this library. What it records goes to the folder ZT_SPOOL_FOLDER, else beside this library.

std::wstring WideFromUtf8(std::string_view text);

// ReadSpoolScript: the script's bytes; empty when there is none.
std::string ReadSpoolScript();

// Record: appends a line to transcript.txt (UTF-8). Lines of several processes never mix.
void Record(std::wstring_view line);

// CreateJobFile: opens the first of job-1.raw, job-2.raw, … that does not exist yet; gives its handle and number. The
// caller closes it.
std::pair<HANDLE, DWORD> CreateJobFile();
