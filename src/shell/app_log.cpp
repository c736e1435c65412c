#include "shell/app_log.h"

#include <cstdio>
#include <mutex>
#include <vector>
#include <unistd.h>

namespace zorvane {

namespace {

std::filesystem::path g_logFilePath;
std::mutex g_logLock;

std::string formatArgument(const char* format, const std::string& argument) {
    const int size = std::snprintf(nullptr, 0, format, argument.c_str());
    if (size < 0) return format;
    std::vector<char> text(static_cast<size_t>(size) + 1);
    std::snprintf(text.data(), text.size(), format, argument.c_str());
    return std::string(text.data(), static_cast<size_t>(size));
}

} // namespace

void SetLogFilePath(const std::filesystem::path& path) {
    std::lock_guard<std::mutex> lock(g_logLock);
    g_logFilePath = path;
}

const std::filesystem::path& LogFilePath() {
    return g_logFilePath;
}

std::string LogLinePrefix(const std::tm& localTime, int processId) {
    char time[32];
    std::strftime(time, sizeof time, "%Y-%m-%d %H:%M:%S", &localTime);
    char prefix[64];
    std::snprintf(prefix, sizeof prefix, "%s, %d: ", time, processId);
    return prefix;
}

void WriteLog(const char* format, const std::string& argument) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const std::string line =
        LogLinePrefix(local, static_cast<int>(getpid())) + formatArgument(format, argument) + "\n";
    std::lock_guard<std::mutex> lock(g_logLock);
    if (g_logFilePath.empty()) return;
    if (std::FILE* file = std::fopen(g_logFilePath.c_str(), "a")) {
        std::fwrite(line.data(), 1, line.size(), file);
        std::fclose(file);
    }
}

} // namespace zorvane
