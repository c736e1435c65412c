#include "shell/command_registry.h"

#include "shell/shell_text.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QWidget>

#include <algorithm>

namespace zorvane {

namespace {
// The moves that a right click on the move back or redo button steps.
constexpr int FEW_MOVES = 4;
} // namespace

bool IsCheckableCommand(CommandId id) {
    using enum CommandId;
    return (id >= TypeDirectMate && id <= TypeHelpmate) || (id >= PriorityHigh && id <= PriorityLow) ||
           (id >= LanguagePolish && id <= LanguageUkrainian) || id == ViewRotateBoard ||
           IsProcessorCommand(id);
}

CommandRegistry::CommandRegistry(QWidget* window) : QObject(window), m_window(window) {
    for (const Accelerator& key : Accelerators()) {
        const CommandInfo* info = FindCommand(key.twin);
        QAction* action = makeAction(key.id, info ? info->text : LocalizedText{}, window);
        action->setShortcut(QKeySequence(QString::fromLatin1(key.keys)));
        action->setShortcutContext(Qt::WindowShortcut);
        window->addAction(action);
    }
    for (const MenuDefinition& definition : PopupMenus()) {
        auto* menu = new QMenu(window);
        fillMenu(menu, definition);
        m_popups[definition.menuId] = menu;
    }
}

CommandRegistry::~CommandRegistry() = default;

QAction* CommandRegistry::makeAction(CommandId id, const LocalizedText& text, QObject* parent) {
    auto* action = new QAction(parent);
    action->setCheckable(IsCheckableCommand(id));
    connect(action, &QAction::triggered, this, [this, id] { emit commandTriggered(id); });
    m_entries.push_back({id, action, text, false, {}});
    m_byCommand.emplace(CanonicalCommand(id), action);
    if (!text.english.empty()) action->setText(Translate(m_languageId, text));
    return action;
}

void CommandRegistry::fillMenu(QMenu* menu, const MenuDefinition& definition) {
    std::vector<QMenu*> stack{menu};
    for (const MenuLine& line : definition.lines) {
        QMenu* current = stack.back();
        if (line.id == MENU_SEPARATOR) {
            current->addSeparator();
        } else if (line.id == SUBMENU_BEGIN) {
            QMenu* sub = current->addMenu(Translate(m_languageId, line.ownText));
            m_menus.emplace_back(sub, line.ownText);
            stack.push_back(sub);
        } else if (line.id == SUBMENU_END) {
            stack.pop_back();
        } else if (line.id == AFFINITY_ITEMS) {
            m_affinityMenu = current;
        } else {
            const CommandInfo* info = FindCommand(line.command());
            const LocalizedText text =
                !line.ownText.english.empty() ? line.ownText : (info ? info->text : LocalizedText{});
            current->addAction(makeAction(line.command(), text, current));
        }
    }
}

void CommandRegistry::buildMainMenu(QMenuBar* bar) {
    for (const MenuDefinition& definition : MainMenus()) {
        QMenu* menu = bar->addMenu(Translate(m_languageId, definition.title));
        m_menus.emplace_back(menu, definition.title);
        fillMenu(menu, definition);
        const auto& lines = definition.lines;
        if (std::any_of(lines.begin(), lines.end(),
                        [](const MenuLine& line) { return line.command() == CommandId::HelpAbout; }))
            m_helpMenu = menu;
    }
}

namespace {

QStyle::StandardPixmap toolPixmap(ToolIcon icon) {
    switch (icon) {
    case ToolIcon::Previous:
        return QStyle::SP_ArrowLeft;
    case ToolIcon::Next:
        return QStyle::SP_ArrowRight;
    case ToolIcon::Select:
        return QStyle::SP_FileDialogListView;
    case ToolIcon::Tag:
        return QStyle::SP_FileDialogNewFolder;
    case ToolIcon::Save:
        return QStyle::SP_DialogSaveButton;
    case ToolIcon::Setting:
        return QStyle::SP_DialogResetButton;
    case ToolIcon::Rotate:
        return QStyle::SP_BrowserReload;
    case ToolIcon::Progress:
        return QStyle::SP_TitleBarUnshadeButton;
    case ToolIcon::MoveBack:
        return QStyle::SP_MediaSeekBackward;
    case ToolIcon::MoveRedo:
        return QStyle::SP_MediaSeekForward;
    }
    return QStyle::SP_CustomBase;
}

} // namespace

QToolBar* CommandRegistry::buildToolBar(QWidget* parent) {
    auto* bar = new QToolBar(parent);
    bar->setMovable(false);
    for (const ToolButton& button : ToolButtons()) {
        QAction* action = makeAction(button.id, button.toolTip, bar);
        m_entries.back().isToolTip = true;
        action->setToolTip(action->text());
        action->setIcon(parent->style()->standardIcon(toolPixmap(button.icon)));
        action->setCheckable(false);
        bar->addAction(action);
        QWidget* widget = bar->widgetForAction(action);
        if (button.icon == ToolIcon::MoveBack || button.icon == ToolIcon::MoveRedo) {
            // A right click steps a few moves at once.
            widget->setContextMenuPolicy(Qt::CustomContextMenu);
            const CommandId id = button.id;
            connect(widget, &QWidget::customContextMenuRequested, this, [this, id] {
                for (int step = 0; step < FEW_MOVES; ++step) emit commandTriggered(id);
            });
            continue;
        }
        if (button.icon != ToolIcon::Select) continue;
        widget->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(widget, &QWidget::customContextMenuRequested, this, [this, widget](const QPoint& point) {
            if (QMenu* list = popup(MENU_PROBLEMS)) list->popup(widget->mapToGlobal(point));
        });
    }
    // No command runs it: the engine has no threads to change yet.
    m_threadsButton = new QAction(QStringLiteral("+/-"), bar);
    m_threadsButton->setObjectName(QStringLiteral("engineThreads"));
    m_threadsButton->setEnabled(false);
    m_entries.push_back(
        {CommandId::Threads, m_threadsButton, EngineThreadsToolTip, true, EngineThreadsWaitTip});
    bar->addAction(m_threadsButton);
    return bar;
}

void CommandRegistry::addAffinityItems(uint64_t systemMask) {
    if (!m_affinityMenu) return;
    for (int cpu = 0; cpu < 64; ++cpu) {
        if (!(systemMask & (uint64_t{1} << cpu))) continue;
        // "Procesor " and the number, the same in every language.
        QAction* action = makeAction(ProcessorCommand(cpu), LocalizedText{}, m_affinityMenu);
        action->setText(QString::fromWCharArray(ProcessorItemText) + QString::number(cpu));
        m_affinityMenu->addAction(action);
    }
}

void CommandRegistry::addBonusItem() {
    if (m_helpMenu) m_helpMenu->addAction(makeAction(CommandId::Bonus, BonusCommandText, m_helpMenu));
}

QMenu* CommandRegistry::popup(int menuId) const {
    const auto it = m_popups.find(menuId);
    return it == m_popups.end() ? nullptr : it->second;
}

void CommandRegistry::retranslate(int languageId) {
    m_languageId = languageId;
    for (const Entry& entry : m_entries) {
        if (entry.text.english.empty()) continue;
        if (!entry.statusTip.english.empty())
            entry.action->setStatusTip(Translate(languageId, entry.statusTip));
        if (entry.isToolTip)
            entry.action->setToolTip(Translate(languageId, entry.text));
        else
            entry.action->setText(Translate(languageId, entry.text));
    }
    for (const auto& [menu, title] : m_menus) menu->setTitle(Translate(languageId, title));
}

QAction* CommandRegistry::action(CommandId id) const {
    for (const Entry& entry : m_entries)
        if (entry.id == id) return entry.action;
    return nullptr;
}

std::vector<QAction*> CommandRegistry::actionsOf(CommandId id) const {
    std::vector<QAction*> actions;
    const auto [first, last] = m_byCommand.equal_range(CanonicalCommand(id));
    for (auto it = first; it != last; ++it) actions.push_back(it->second);
    return actions;
}

std::vector<CommandId> CommandRegistry::commandIds() const {
    std::vector<CommandId> ids;
    for (const auto& [id, action] : m_byCommand)
        if (ids.empty() || ids.back() != id) ids.push_back(id);
    return ids;
}

bool CommandRegistry::isEnabled(CommandId id) const {
    const auto it = m_byCommand.find(CanonicalCommand(id));
    return it != m_byCommand.end() && it->second->isEnabled();
}

void CommandRegistry::setEnabled(CommandId id, bool enabled) {
    for (QAction* action : actionsOf(id)) action->setEnabled(enabled);
}

void CommandRegistry::setStatusTip(CommandId id, const QString& tip) {
    for (QAction* action : actionsOf(id)) action->setStatusTip(tip);
}

void CommandRegistry::setChecked(CommandId id, bool checked) {
    for (QAction* action : actionsOf(id))
        if (action->isCheckable()) action->setChecked(checked);
}

} // namespace zorvane
