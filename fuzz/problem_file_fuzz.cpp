// Any bytes through the problem file reader. It must never crash, hang or
// throw anything but its own errors, and what it accepts must come back
// through the writer: the written text reads again, and from then on a
// write and a read change nothing.
#include "core/chess_exception.h"
#include "problems/problem_file.h"
#include "fuzz_check.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

namespace {

using namespace zorvane;

// A GUICHECK written without its count swallows the next lexem on reading;
// the format keeps that, so such a map is not expected to read back.
bool writtenFormReadable(const ProblemMap& problems) {
    for (const auto& [id, problem] : problems)
        if ((problem->flags & (GuiCheck | GuiCheckBestDefence)) && problem->guiCheckCount <= 1) return false;
    return true;
}

// Reads a text the writer made; any error here is a fault of the writer or the reader.
ProblemMap readBack(const std::string& text) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    try {
        ReadProblemText(text, problems, ProblemFileSettings{}, tags);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "written text does not read back: %s\n----\n%s----\n", e.what(), text.c_str());
        std::abort();
    }
    return problems;
}

using zorvane::fuzz::check;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    ProblemMap problems;
    std::set<std::wstring> tags;
    // The report counts the blocks of the whole text, whatever its bytes.
    ProblemLoadReport report;
    try {
        ReadProblemText(text, problems, ProblemFileSettings{}, tags, &report);
    } catch (const ChessException&) {
        check(!report.whole && report.problemsNotRead >= 0, "a failed load is reported");
        return 0;
    } catch (const std::exception&) {
        return 0;
    }
    check(report.whole && report.problemsNotRead == 0, "a whole load is reported");
    if (!writtenFormReadable(problems)) return 0;

    const std::string first = WriteProblemFileText(problems, true);
    const ProblemMap again = readBack(first);
    check(again.size() == problems.size(), "same number of problems");
    // The header's stipulation and the played line survive a save.
    for (const auto& [id, problem] : problems) {
        const TChessProblem& read = *again.at(id);
        check(read.type == problem->type, "same type");
        check(read.stipulationMoves() == problem->stipulationMoves(), "same stipulation");
        check(read.playedPositions.size() == problem->playedPositions.size(), "same played moves");
    }
    if (!writtenFormReadable(again)) return 0;
    // A first save may drop what the writer never emits (lost sections of a
    // position without options, a doubled main variant); after that it is stable.
    const std::string second = WriteProblemFileText(again, true);
    const std::string third = WriteProblemFileText(readBack(second), true);
    check(second == third, "a second save gives the same text");
    return 0;
}
