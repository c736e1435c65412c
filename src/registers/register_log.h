#pragma once
// CRegisterLog: the diagnostic log of the temporary registers
// ("registerInfo.log"), off unless the option asks for it. Each message is
// appended with the register's counters at that moment; the file is opened per
// message so that a crash loses nothing that was written.
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <utility>

namespace zorvane {

class CRegisterLog {
  public:
    explicit CRegisterLog(std::filesystem::path path) : m_path(std::move(path)) {}

    // Two lines: "<message>, msg params: p1, p2" and the counters.
    void Write(const char* message, int p1, int p2, uint32_t elementsIn, uint32_t doubtfulElementsIn);

    const std::filesystem::path& Path() const { return m_path; }

  private:
    std::filesystem::path m_path;
    // Registers of one solve share the log; their lines must not interleave.
    std::mutex m_cs;
};

} // namespace zorvane
