#pragma once
// The questions and boxes of the board's commands go through this record, so
// that tests can answer them; the window fills it with message boxes.
#include <QString>

#include <functional>

class QWidget;

namespace zorvane {

struct ShellPrompts {
    // A box with one button.
    std::function<void(const QString& title, const QString& text)> inform;
    // A box with the error icon and one button.
    std::function<void(const QString& title, const QString& text)> error;
    // Yes or No; true for Yes.
    std::function<bool(const QString& title, const QString& text)> ask;
};

// Message boxes over `parent`.
ShellPrompts MessageBoxPrompts(QWidget* parent);

// The four standard titles.
QString QuestionTitle(int languageId);
QString WarningTitle(int languageId);
QString ErrorTitle(int languageId);
QString InformationTitle(int languageId);

} // namespace zorvane
