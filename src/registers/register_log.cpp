#include "register_log.h"

#include <cstdio>

namespace zorvane {

void CRegisterLog::Write(const char* message, int p1, int p2, uint32_t elementsIn,
                         uint32_t doubtfulElementsIn) {
    std::lock_guard<std::mutex> lock(m_cs);
    std::FILE* file = std::fopen(m_path.string().c_str(), "a");
    if (!file) return; // a diagnostic log never stops the search
    std::fprintf(file, "%s, msg params: %d, %d\n", message, p1, p2);
    std::fprintf(file, "\t\t\tElementsIn= %d, DoubtfulElementsIn=%d\n", static_cast<int>(elementsIn),
                 static_cast<int>(doubtfulElementsIn));
    std::fclose(file);
}

} // namespace zorvane
