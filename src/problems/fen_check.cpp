#include "problems/fen_check.h"

#include "core/fen.h"

#include <array>
#include <cstring>
#include <regex>
#include <set>

namespace zorvane {

FenCheckResult CheckFenCodes(const std::string& text, const ProblemMap& problems) {
    std::set<std::array<uint8_t, 64>> known;
    for (const auto& [id, problem] : problems) {
        std::array<uint8_t, 64> squares{};
        std::memcpy(squares.data(), problem->startPosition.m_aSquares, 64);
        known.insert(squares);
    }
    // A placement of eight ranks, with the fields that may follow it kept for the report.
    static const std::regex fen(R"(([pnbrqkPNBRQK1-8]{1,8}(?:/[pnbrqkPNBRQK1-8]{1,8}){7}))"
                                R"((?:[ \t]+[wb](?:[ \t]+(?:-|[KQkq]{1,4}))?(?:[ \t]+(?:-|[a-h][36]))?)"
                                R"((?:[ \t]+\d+){0,2})?)");
    FenCheckResult result;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), fen); it != std::sregex_iterator(); ++it) {
        std::array<uint8_t, 64> squares{};
        // Eight ranks of other lengths than eight squares are no FEN code.
        if (!ReadFenPlacement((*it)[1].str(), squares.data())) continue;
        ++result.codes;
        if (!known.contains(squares)) result.notFound.push_back(it->str());
    }
    return result;
}

} // namespace zorvane
