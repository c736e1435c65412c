#pragma once
// The program's own log, "Quorlan.log" in the data directory. Every line is
// "<local time>, <pid>: <text>" and the file is opened and closed per line, so
// that a crash loses nothing and several instances can share one file.
// Plain C++: the engine may write here too.
#include <ctime>
#include <filesystem>
#include <string>

namespace zorvane {

// Sets the file that WriteLog appends to (`logFilePath`).
void SetLogFilePath(const std::filesystem::path& path);
const std::filesystem::path& LogFilePath();

// "2024-05-01 13:45:07, 4242: " for the given local time and process id.
std::string LogLinePrefix(const std::tm& localTime, int processId);

// Appends one line: the prefix, `format` with `argument` put in for its "%s", a line feed.
// Silent when the file cannot be opened: the log never stops the program.
void WriteLog(const char* format, const std::string& argument);

} // namespace zorvane
