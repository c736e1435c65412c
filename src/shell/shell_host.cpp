#include "shell/shell_host.h"

#include "problems/problem_file.h"
#include "shell/window_services.h"

namespace zorvane {

ShellHost::ShellHost(WindowServices& window, std::function<bool()> saveAs)
    : m_window(window), m_saveAs(std::move(saveAs)) {}

Answer ShellHost::Ask(const std::wstring& title, const std::wstring& text, Buttons buttons) {
    return m_window.prompts().ask(TranslateTitle(m_window.language(), title), QString::fromStdWString(text),
                                  buttons, PromptIcon::Question);
}

void ShellHost::ShowError(const std::wstring& title, const std::wstring& text) {
    m_window.prompts().message(TranslateTitle(m_window.language(), title), QString::fromStdWString(text),
                               PromptIcon::Error);
}

void ShellHost::ShowStatus(const std::wstring& text) {
    m_window.showStatus(QString::fromStdWString(text));
}

bool ShellHost::IsSolving(const TChessProblem& problem) {
    return m_window.runningSolves().contains(problem.id);
}

void ShellHost::StopSolving(TChessProblem& /*problem*/) {
    // The list asks this only for the current problem.
    m_window.stopCurrentSolve();
}

void ShellHost::ShowProblem(const TChessProblem& /*problem*/, const TChessboard& position) {
    // The list asks for the diagram of a direct mate, not the moves a solve or
    // the user played on it; what the status said of the problem left behind is over.
    m_window.showStatus(QString());
    m_window.showCurrentProblemAt(position);
}

void ShellHost::WriteFile(const std::filesystem::path& path, const ProblemMap& problems) {
    SaveProblemFile(path, problems, m_window.fileSettings());
}

bool ShellHost::SaveAs() {
    return m_saveAs && m_saveAs();
}

} // namespace zorvane
