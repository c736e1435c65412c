#pragma once
// ShellHost: the problem list's questions and effects, answered by the window.
#include "problems/problem_list.h"

#include <functional>

namespace zorvane {

class WindowServices;

class ShellHost : public ProblemListHost {
  public:
    // `saveAs` runs the Save-as command for a list without a file.
    ShellHost(WindowServices& window, std::function<bool()> saveAs);

    Answer Ask(const std::wstring& title, const std::wstring& text, Buttons buttons) override;
    void ShowError(const std::wstring& title, const std::wstring& text) override;
    void ShowStatus(const std::wstring& text) override;
    bool IsSolving(const TChessProblem& problem) override;
    void StopSolving(TChessProblem& problem) override;
    void ShowProblem(const TChessProblem& problem, const TChessboard& position) override;
    void WriteFile(const std::filesystem::path& path, const ProblemMap& problems) override;
    bool SaveAs() override;

  private:
    WindowServices& m_window;
    std::function<bool()> m_saveAs;
};

} // namespace zorvane
