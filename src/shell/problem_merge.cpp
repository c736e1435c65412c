#include "shell/problem_merge.h"

#include <cstring>

namespace zorvane {

namespace {

bool samePosition(const TChessProblem& a, const TChessProblem& b) {
    return std::memcmp(a.startPosition.m_aSquares, b.startPosition.m_aSquares, 64) == 0;
}

bool sameStipulation(const TChessProblem& a, const TChessProblem& b) {
    return a.type == b.type && a.plies == b.plies;
}

} // namespace

AppendResult AppendProblems(ProblemMap& list, ProblemMap other) {
    AppendResult result;
    int32_t next = list.empty() ? 1 : list.rbegin()->first + 1;
    for (auto& [id, problem] : other) {
        const TChessProblem* differing = nullptr;
        bool present = false;
        for (const auto& [listId, listed] : list) {
            if (!samePosition(*listed, *problem)) continue;
            if (sameStipulation(*listed, *problem))
                present = true;
            else if (!differing)
                differing = listed.get();
        }
        if (present) continue;
        problem->id = next;
        if (differing)
            result.differingStipulations.push_back(std::to_wstring(next) + L" #" +
                                                   std::to_wstring(problem->stipulationMoves()) + L" vs. #" +
                                                   std::to_wstring(differing->stipulationMoves()));
        result.appended.push_back(next);
        list.emplace(next++, std::move(problem));
    }
    return result;
}

RemoveResult RemoveProblems(ProblemMap& list, const ProblemMap& other, int32_t currentId) {
    RemoveResult result;
    for (auto it = list.begin(); it != list.end();) {
        bool found = false;
        for (const auto& [otherId, candidate] : other) found = found || samePosition(*it->second, *candidate);
        if (!found) {
            ++it;
        } else if (it->first == currentId) {
            result.currentKept = true;
            ++it;
        } else {
            result.removed.emplace(it->first, std::move(it->second));
            it = list.erase(it);
        }
    }
    return result;
}

int AppendMatchingTags(TChessProblem& problem, const ProblemMap& other) {
    int added = 0;
    for (const auto& [id, candidate] : other)
        if (samePosition(problem, *candidate))
            for (const std::wstring& tag : candidate->tags) added += problem.tags.insert(tag).second ? 1 : 0;
    return added;
}

} // namespace zorvane
