#include "problems/problem_scan.h"

#include <fstream>
#include <regex>
#include <stdexcept>

namespace zorvane {

namespace {

std::string trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::vector<std::string> splitAnswers(const std::string& text) {
    std::vector<std::string> answers;
    size_t start = 0;
    while (start <= text.size()) {
        const auto comma = text.find(',', start);
        const std::string item = trim(text.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
        if (!item.empty()) answers.push_back(item);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return answers;
}

} // namespace

std::vector<ScannedProblem> ScanProblemFile(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("Error opening file: " + path);
    static const std::regex header(R"(^\s*(\d+)\s+(\S+))");
    std::vector<ScannedProblem> problems;
    std::string line;
    while (std::getline(in, line)) {
        const std::string text = trim(line);
        std::smatch match;
        if (std::regex_search(text, match, header) && text.find(':') == std::string::npos) {
            ScannedProblem problem;
            problem.number = std::stoi(match[1].str());
            const std::string stipulation = match[2].str();
            if (stipulation.size() > 1 && stipulation[0] == '#' &&
                stipulation.find_first_not_of("0123456789", 1) == std::string::npos)
                problem.moves = std::stoi(stipulation.substr(1));
            problems.push_back(problem);
        } else if (!problems.empty() && text.rfind("FEN:", 0) == 0) {
            problems.back().fen = trim(text.substr(4));
        } else if (!problems.empty() && text.rfind("Answer:", 0) == 0) {
            problems.back().answers = splitAnswers(text.substr(7));
        }
    }
    return problems;
}

} // namespace zorvane
