#pragma once
// Every question, box and file dialog of the window goes through Prompts, so
// that tests can answer them without a modal loop. DialogPrompts is the real
// one, with the toolkit's boxes.
#include "problems/problem_list.h"

#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace zorvane {

enum class PromptIcon { Information, Warning, Error, Question };

class Prompts {
  public:
    virtual ~Prompts() = default;
    virtual Answer ask(const QString& title, const QString& text, Buttons buttons, PromptIcon icon) = 0;
    virtual void message(const QString& title, const QString& text, PromptIcon icon) = 0;
    // An empty name when the user gave up.
    virtual QString openFileName(const QString& caption, const QString& directory, const QString& filter) = 0;
    virtual QString saveFileName(const QString& caption, const QString& directory, const QString& filter) = 0;
    virtual std::optional<int> askNumber(const QString& title, const QString& label, int value, int minimum,
                                         int maximum) = 0;
    // One of `items`, or with `editable` any text typed; nothing when cancelled.
    virtual std::optional<QString> askItem(const QString& title, const QString& label,
                                           const QStringList& items, bool editable) = 0;
    // True while a box or dialog of these prompts is open: outside changes wait till it closes.
    virtual bool busy() const { return false; }
};

class DialogPrompts : public Prompts {
  public:
    explicit DialogPrompts(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }

    Answer ask(const QString& title, const QString& text, Buttons buttons, PromptIcon icon) override;
    void message(const QString& title, const QString& text, PromptIcon icon) override;
    QString openFileName(const QString& caption, const QString& directory, const QString& filter) override;
    QString saveFileName(const QString& caption, const QString& directory, const QString& filter) override;
    std::optional<int> askNumber(const QString& title, const QString& label, int value, int minimum,
                                 int maximum) override;
    std::optional<QString> askItem(const QString& title, const QString& label, const QStringList& items,
                                   bool editable) override;
    bool busy() const override { return m_open > 0; }

  private:
    class Open;
    QWidget* m_parent;
    int m_open = 0;
};

} // namespace zorvane
