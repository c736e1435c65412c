#pragma once
// Prompts for window tests: every box is written down as "Title|Text", and
// the answers, file names, numbers and choices come from queues filled by the
// test. A question with nothing queued is answered Cancel (or No) and noted.
#include "shell/prompts.h"

#include <QStringList>

#include <deque>
#include <optional>

namespace zorvane {

class ScriptedPrompts : public Prompts {
  public:
    QStringList boxes;
    QList<Buttons> questionButtons; // the buttons of each question, in order
    std::deque<Answer> answers;
    std::deque<QString> fileNames;
    std::deque<std::optional<int>> numbers;
    std::deque<std::optional<QString>> items;
    QStringList offeredItems; // the list of the last askItem

    Answer ask(const QString& title, const QString& text, Buttons buttons, PromptIcon) override {
        boxes << title + "|" + text;
        questionButtons << buttons;
        if (answers.empty()) {
            boxes << QStringLiteral("(unanswered)");
            return buttons == Buttons::YesNo || buttons == Buttons::YesNoDefaultNo ? Answer::No
                                                                                   : Answer::Cancel;
        }
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void message(const QString& title, const QString& text, PromptIcon) override {
        boxes << title + "|" + text;
    }
    QString openFileName(const QString&, const QString&, const QString&) override { return nextFile(); }
    QString saveFileName(const QString&, const QString&, const QString&) override { return nextFile(); }
    std::optional<int> askNumber(const QString&, const QString&, int, int, int) override {
        if (numbers.empty()) return std::nullopt;
        const auto number = numbers.front();
        numbers.pop_front();
        return number;
    }
    std::optional<QString> askItem(const QString&, const QString&, const QStringList& list, bool) override {
        offeredItems = list;
        if (items.empty()) return std::nullopt;
        const auto item = items.front();
        items.pop_front();
        return item;
    }

  private:
    QString nextFile() {
        if (fileNames.empty()) return QString();
        const QString name = fileNames.front();
        fileNames.pop_front();
        return name;
    }
};

} // namespace zorvane
