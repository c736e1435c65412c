#pragma once
// CommandRegistry: one action per command id and place, made from the command
// table: the menu bar, the pop-ups, and the keys (held by the window, outside
// the menus, so that one key can stand for a command shown in two places).
// Aliases share the enabled state of their twin. The registry knows nothing
// of what commands do; a triggered action only reports its id.
#include "shell/command_table.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <map>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

namespace zorvane {

class CommandRegistry : public QObject {
    Q_OBJECT
  public:
    // `window` receives the keys of the accelerator table.
    explicit CommandRegistry(QWidget* window);
    ~CommandRegistry() override;

    void buildMainMenu(QMenuBar* bar);
    // The tool buttons; a right click on the select button opens the problem list pop-up.
    QToolBar* buildToolBar(QWidget* parent);
    // One item per processor of `systemMask` under Processor affinity.
    void addAffinityItems(uint64_t systemMask);
    // The item that Ctrl and Shift held at start add under Help.
    void addBonusItem();
    QMenu* popup(int menuId) const;
    // The +/- button of the engine's threads: greyed until the engine runs threads of its own.
    QAction* engineThreadsButton() const { return m_threadsButton; }

    // Replaces every text by its form in the language.
    void retranslate(int languageId);

    // The first action made for the command (its menu item, or its key), or null.
    QAction* action(CommandId id) const;
    // Every action that runs the command: its items, its keys and its aliases.
    std::vector<QAction*> actionsOf(CommandId id) const;
    // Commands as the table and the dynamic items give them (aliases not included).
    std::vector<CommandId> commandIds() const;

    bool isEnabled(CommandId id) const;
    void setEnabled(CommandId id, bool enabled);
    void setChecked(CommandId id, bool checked);
    void setStatusTip(CommandId id, const QString& tip);

  signals:
    // The id of the item or key as triggered; aliases keep their own id.
    void commandTriggered(CommandId id);

  private:
    struct Entry {
        CommandId id;
        QAction* action;
        LocalizedText text;
        bool isToolTip = false;
        LocalizedText statusTip; // for the entries that keep one of their own
    };
    QAction* makeAction(CommandId id, const LocalizedText& text, QObject* parent);
    void fillMenu(QMenu* menu, const MenuDefinition& definition);

    QWidget* m_window;
    std::vector<Entry> m_entries;
    std::multimap<CommandId, QAction*> m_byCommand; // canonical id -> actions
    std::vector<std::pair<QMenu*, LocalizedText>> m_menus;
    std::map<int, QMenu*> m_popups;
    QMenu* m_affinityMenu = nullptr;
    QAction* m_threadsButton = nullptr;
    QMenu* m_helpMenu = nullptr;
    int m_languageId = 1;
};

// Items with a check mark.
bool IsCheckableCommand(CommandId id);

} // namespace zorvane
