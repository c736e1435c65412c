#include "shell/prompts.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace zorvane {

// Counts the open dialogs for busy().
class DialogPrompts::Open {
  public:
    explicit Open(int& open) : m_open(open) { ++m_open; }
    ~Open() { --m_open; }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;

  private:
    int& m_open;
};

namespace {

QMessageBox::Icon boxIcon(PromptIcon icon) {
    switch (icon) {
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Warning:
        return QMessageBox::Warning;
    case PromptIcon::Error:
        return QMessageBox::Critical;
    case PromptIcon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons boxButtons(Buttons buttons) {
    switch (buttons) {
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
    case Buttons::YesNoDefaultNo:
        return QMessageBox::Yes | QMessageBox::No;
    }
    return QMessageBox::Ok;
}

} // namespace

Answer DialogPrompts::ask(const QString& title, const QString& text, Buttons buttons, PromptIcon icon) {
    Open open(m_open);
    QMessageBox box(boxIcon(icon), title, text, boxButtons(buttons), m_parent);
    if (buttons == Buttons::YesNoDefaultNo) box.setDefaultButton(QMessageBox::No);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Ok:
        return Answer::Ok;
    default:
        return buttons == Buttons::YesNo || buttons == Buttons::YesNoDefaultNo ? Answer::No : Answer::Cancel;
    }
}

void DialogPrompts::message(const QString& title, const QString& text, PromptIcon icon) {
    Open open(m_open);
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::Ok, m_parent);
    box.exec();
}

QString DialogPrompts::openFileName(const QString& caption, const QString& directory, const QString& filter) {
    Open open(m_open);
    return QFileDialog::getOpenFileName(m_parent, caption, directory, filter);
}

QString DialogPrompts::saveFileName(const QString& caption, const QString& directory, const QString& filter) {
    Open open(m_open);
    return QFileDialog::getSaveFileName(m_parent, caption, directory, filter);
}

std::optional<int> DialogPrompts::askNumber(const QString& title, const QString& label, int value,
                                            int minimum, int maximum) {
    Open open(m_open);
    bool ok = false;
    const int number = QInputDialog::getInt(m_parent, title, label, value, minimum, maximum, 1, &ok);
    return ok ? std::optional<int>(number) : std::nullopt;
}

std::optional<QString> DialogPrompts::askItem(const QString& title, const QString& label,
                                              const QStringList& items, bool editable) {
    Open open(m_open);
    bool ok = false;
    const QString item = QInputDialog::getItem(m_parent, title, label, items, 0, editable, &ok);
    return ok ? std::optional<QString>(item) : std::nullopt;
}

} // namespace zorvane
