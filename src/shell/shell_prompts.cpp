#include "shell/shell_prompts.h"

#include "problems/language.h"

#include <QMessageBox>
#include <QPointer>

namespace zorvane {

ShellPrompts MessageBoxPrompts(QWidget* parent) {
    const QPointer<QWidget> owner(parent);
    ShellPrompts prompts;
    prompts.inform = [owner](const QString& title, const QString& text) {
        QMessageBox::information(owner, title, text);
    };
    prompts.error = [owner](const QString& title, const QString& text) {
        QMessageBox::critical(owner, title, text);
    };
    prompts.ask = [owner](const QString& title, const QString& text) {
        return QMessageBox::question(owner, title, text, QMessageBox::Yes | QMessageBox::No) ==
               QMessageBox::Yes;
    };
    return prompts;
}

QString QuestionTitle(int languageId) {
    return QString::fromWCharArray(Tr(languageId, L"Pytanie", L"Question", L"Питання"));
}
QString WarningTitle(int languageId) {
    return QString::fromWCharArray(Tr(languageId, L"Ostrzeżenie", L"Warning", L"Увага"));
}
QString ErrorTitle(int languageId) {
    return QString::fromWCharArray(Tr(languageId, L"Błąd", L"Error", L"Помилка"));
}
QString InformationTitle(int languageId) {
    return QString::fromWCharArray(Tr(languageId, L"Informacja", L"Information", L"Інформація"));
}

} // namespace zorvane
