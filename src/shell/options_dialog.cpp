#include "shell/options_dialog.h"

#include "options/memory_limit.h"
#include "options/options_dialog_check.h"
#include "options/options_dialog_texts.h"
#include "shell/shell_text.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <utility>

namespace zorvane {
namespace {

// Radio buttons carry their option's value as their id.
void checkRadio(QButtonGroup* group, int value) {
    // An exclusive group cannot uncheck its last button: a value that no
    // button stands for (MinimizeToTray=7) leaves them all unchecked.
    group->setExclusive(false);
    for (QAbstractButton* button : group->buttons()) button->setChecked(group->id(button) == value);
    group->setExclusive(true);
}

int radioValue(const QButtonGroup* group, int before) {
    const int id = group->checkedId();
    return id < 0 ? before : id;
}

QString number(int value) {
    return QString::number(value);
}

QMessageBox::Icon iconOf(MessageTitle title) {
    switch (title) {
    case MessageTitle::Question:
        return QMessageBox::Question;
    case MessageTitle::Warning:
        return QMessageBox::Warning;
    case MessageTitle::Error:
        return QMessageBox::Critical;
    case MessageTitle::Information:
        break;
    }
    return QMessageBox::Information;
}

} // namespace

OptionsDialog::OptionsDialog(int languageId, std::filesystem::path optionsPath, QWidget* parent)
    : QDialog(parent), m_language(languageId), m_optionsPath(std::move(optionsPath)) {
    setWindowTitle(text(OptionsControl::Title));
    m_sink = [this](MessageTitle title, const QString& caption, const QString& message) {
        QMessageBox box(iconOf(title), caption, message, QMessageBox::Ok, this);
        box.exec();
    };

    const auto label = [this](OptionsControl control) {
        auto* widget = new QLabel(text(control));
        widget->setToolTip(tooltip(control));
        widget->setWordWrap(true);
        return widget;
    };
    const auto edit = [this](OptionsControl control, const char* name) {
        auto* widget = new QLineEdit;
        widget->setObjectName(name);
        widget->setToolTip(tooltip(control));
        widget->setMaximumWidth(64);
        return widget;
    };
    const auto check = [this](OptionsControl control, const char* name) {
        auto* widget = new QCheckBox(text(control));
        widget->setObjectName(name);
        widget->setToolTip(tooltip(control));
        return widget;
    };
    struct Radio {
        OptionsControl control;
        const char* name;
        int value;
    };
    const auto radios = [this](QButtonGroup*& group, std::initializer_list<Radio> buttons) {
        group = new QButtonGroup(this);
        auto* row = new QHBoxLayout;
        for (const Radio& r : buttons) {
            auto* button = new QRadioButton(text(r.control));
            button->setObjectName(r.name);
            button->setToolTip(tooltip(r.control));
            group->addButton(button, r.value);
            row->addWidget(button);
        }
        row->addStretch();
        return row;
    };

    auto* grid = new QGridLayout;
    int line = 0;
    const auto addRow = [&](QWidget* first, QWidget* second = nullptr, QWidget* third = nullptr) {
        grid->addWidget(first, line, 0);
        if (second) grid->addWidget(second, line, 1);
        if (third) grid->addWidget(third, line, 2);
        ++line;
    };

    m_threadsEdit = edit(OptionsControl::ThreadsAndLevels, "threadsEdit");
    m_levelsEdit = edit(OptionsControl::ThreadsAndLevels, "levelsEdit");
    auto* threadsBox = new QWidget;
    auto* threadsRow = new QHBoxLayout(threadsBox);
    threadsRow->setContentsMargins(0, 0, 0, 0);
    threadsRow->addWidget(m_threadsEdit);
    threadsRow->addWidget(new QLabel(QStringLiteral("^")));
    threadsRow->addWidget(m_levelsEdit);
    addRow(label(OptionsControl::ThreadsAndLevels), threadsBox, label(OptionsControl::ThreadsNotSaved));

    grid->addWidget(label(OptionsControl::RepeatedPositions), line, 0);
    grid->addLayout(radios(m_quickMode, {{OptionsControl::QuickModeYes, "quickModeYes", 1},
                                         {OptionsControl::QuickModeNo, "quickModeNo", 0}}),
                    line++, 1, 1, 2);

    m_tempRegRatio = edit(OptionsControl::TempRegRatio, "tempRegRatioEdit");
    m_tempRegLimit = new QLabel;
    m_tempRegLimit->setObjectName("tempRegLimitLabel");
    addRow(label(OptionsControl::TempRegRatio), m_tempRegRatio, m_tempRegLimit);

    m_schedulerLevels = edit(OptionsControl::SchedulerLevels, "schedulerLevelsEdit");
    m_customScheduler = check(OptionsControl::CustomScheduler, "customSchedulerCheck");
    addRow(label(OptionsControl::SchedulerLevels), m_schedulerLevels, m_customScheduler);

    m_mainVariantAsSort = new QCheckBox(text(OptionsControl::MainVariantAsSortIndications) +
                                        text(OptionsControl::MainVariantSpeedsUp));
    m_mainVariantAsSort->setObjectName("mainVariantAsSortCheck");
    m_mainVariantAsSort->setToolTip(tooltip(OptionsControl::MainVariantAsSortIndications));
    grid->addWidget(m_mainVariantAsSort, line++, 0, 1, 3);

    m_observerLevels = edit(OptionsControl::ObserverLevels, "observerLevelsEdit");
    addRow(label(OptionsControl::ObserverLevels), m_observerLevels);

    m_precalcRatio = edit(OptionsControl::PrecalcRatio, "precalcRatioEdit");
    m_precalcLimit = new QLabel;
    m_precalcLimit->setObjectName("precalcLimitLabel");
    addRow(label(OptionsControl::PrecalcRatio), m_precalcRatio, m_precalcLimit);

    m_lichessLevels = edit(OptionsControl::LichessLevels, "lichessLevelsEdit");
    addRow(label(OptionsControl::LichessLevels), m_lichessLevels);

    m_clearRegister = check(OptionsControl::ClearRegister, "clearRegisterCheck");
    m_promptHeuristics = check(OptionsControl::PromptHeuristics, "promptHeuristicsCheck");
    m_showMainVariant = check(OptionsControl::ShowMainVariant, "showMainVariantCheck");
    for (QCheckBox* box : {m_clearRegister, m_promptHeuristics, m_showMainVariant})
        grid->addWidget(box, line++, 0, 1, 3);

    grid->addWidget(label(OptionsControl::MinimizeToTray), line, 0);
    grid->addLayout(radios(m_minimizeToTray, {{OptionsControl::MinimizeNever, "minimizeNever", 0},
                                              {OptionsControl::MinimizeAlways, "minimizeAlways", 1},
                                              {OptionsControl::MinimizeWithCtrl, "minimizeWithCtrl", 2}}),
                    line++, 1, 1, 2);

    m_logMoves = check(OptionsControl::LogMoves, "logMovesCheck");
    grid->addWidget(m_logMoves, line++, 0, 1, 3);

    grid->addWidget(label(OptionsControl::SecondInstance), line, 0);
    grid->addLayout(
        radios(m_secondInstance, {{OptionsControl::SecondInstanceSilent, "secondInstanceNo", 0},
                                  {OptionsControl::SecondInstanceMessageBox, "secondInstanceYes", 1},
                                  {OptionsControl::SecondInstanceStatusBar, "secondInstanceStatusBar", 2}}),
        line++, 1, 1, 2);

    m_manualEngineControl = check(OptionsControl::ManualEngineControlYes, "manualEngineControlCheck");
    addRow(label(OptionsControl::ManualEngineControl), m_manualEngineControl);

    auto* save = new QPushButton(text(OptionsControl::SaveSettings));
    save->setObjectName("saveButton");
    save->setToolTip(tooltip(OptionsControl::SaveSettings));
    auto* ok = new QPushButton(text(OptionsControl::Ok));
    ok->setObjectName("okButton");
    ok->setDefault(true);
    auto* cancel = new QPushButton(text(OptionsControl::Cancel));
    cancel->setObjectName("cancelButton");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(save);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    connect(save, &QPushButton::clicked, this, &OptionsDialog::saveSettings);
    connect(ok, &QPushButton::clicked, this, &OptionsDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &OptionsDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    connect(m_tempRegRatio, &QLineEdit::textChanged, this, &OptionsDialog::showMemoryLimits);
    connect(m_precalcRatio, &QLineEdit::textChanged, this, &OptionsDialog::showMemoryLimits);
    setOptions(m_options);
}

QString OptionsDialog::text(OptionsControl control) const {
    return Translate(m_language, OptionsControlTexts(control).label);
}

QString OptionsDialog::tooltip(OptionsControl control) const {
    return Translate(m_language, OptionsControlTexts(control).tooltip);
}

void OptionsDialog::setOptions(const Options& options) {
    m_before = m_options = options;
    showValues(m_before, m_threadsBefore);
}

void OptionsDialog::setThreads(int threads) {
    m_threadsBefore = m_threads = threads;
    showValues(m_before, m_threadsBefore);
}

void OptionsDialog::setPhysicalMemory(std::uint64_t bytes) {
    m_physicalMemory = bytes;
    showMemoryLimits();
}

void OptionsDialog::showValues(const Options& o, int threads) {
    m_threadsEdit->setText(number(threads));
    m_levelsEdit->setText(number(o.MultithreadingLevels));
    checkRadio(m_quickMode, o.QuickMode ? 1 : 0);
    m_tempRegRatio->setText(number(o.MaxMemRatioForTempReg));
    m_schedulerLevels->setText(number(o.SchedulerLevels));
    m_customScheduler->setChecked(o.CustomScheduler);
    m_mainVariantAsSort->setChecked(o.UseMainVariantAsSortIndications);
    m_observerLevels->setText(number(o.ObserverLevels));
    m_precalcRatio->setText(number(o.MaxMemRatioForPrecalculatedData));
    m_lichessLevels->setText(number(o.LichessLevels));
    m_clearRegister->setChecked(o.ClearRegisterOnStartSolving);
    m_promptHeuristics->setChecked(o.PromptHeuristics);
    m_showMainVariant->setChecked(o.ShowMainVariant);
    checkRadio(m_minimizeToTray, o.MinimizeToTray);
    m_logMoves->setChecked(o.LogMoves);
    checkRadio(m_secondInstance, o.WarnAboutSecondInstanceOfProgram);
    m_manualEngineControl->setChecked(o.EnableManualEngineControl);
}

void OptionsDialog::showMemoryLimits() {
    const auto limit = [this](const QLineEdit* field, auto bytesFor) {
        bool ok = false;
        const int ratio = field->text().trimmed().toInt(&ok);
        if (!ok || ratio < 0 || ratio > MAX_MEMORY_RATIO || m_physicalMemory == 0) return QString();
        return QString::fromStdWString(MemorySizeText(bytesFor(ratio)));
    };
    m_tempRegLimit->setText(
        limit(m_tempRegRatio, [this](int ratio) { return TempRegLimitMb(m_physicalMemory, ratio) << 20; }));
    m_precalcLimit->setText(limit(
        m_precalcRatio, [this](int ratio) { return PrecalculatedDataLimitBytes(m_physicalMemory, ratio); }));
}

bool OptionsDialog::takeOver() {
    OptionsDialogEntry entry;
    Options& c = entry.choices;
    c = m_before;
    c.QuickMode = radioValue(m_quickMode, m_before.QuickMode ? 1 : 0) != 0;
    c.CustomScheduler = m_customScheduler->isChecked();
    c.UseMainVariantAsSortIndications = m_mainVariantAsSort->isChecked();
    c.ClearRegisterOnStartSolving = m_clearRegister->isChecked();
    c.PromptHeuristics = m_promptHeuristics->isChecked();
    c.ShowMainVariant = m_showMainVariant->isChecked();
    c.MinimizeToTray = radioValue(m_minimizeToTray, m_before.MinimizeToTray);
    c.LogMoves = m_logMoves->isChecked();
    c.WarnAboutSecondInstanceOfProgram =
        radioValue(m_secondInstance, m_before.WarnAboutSecondInstanceOfProgram);
    c.EnableManualEngineControl = m_manualEngineControl->isChecked();
    entry.precalcRatio = m_precalcRatio->text().toStdString();
    entry.tempRegRatio = m_tempRegRatio->text().toStdString();
    entry.schedulerLevels = m_schedulerLevels->text().toStdString();
    entry.observerLevels = m_observerLevels->text().toStdString();
    entry.lichessLevels = m_lichessLevels->text().toStdString();
    entry.threads = m_threadsEdit->text().toStdString();
    entry.multithreadingLevels = m_levelsEdit->text().toStdString();

    const OptionsDialogOutcome outcome = CheckOptionsDialog(m_before, entry);
    for (const DialogMessage& message : outcome.messages)
        m_sink(message.title, TitleText(m_language, message.title), Translate(m_language, message.text));
    if (!outcome.accepted) {
        showValues(m_before, m_threadsBefore);
        return false;
    }
    m_options = outcome.options;
    m_threads = outcome.threads;
    return true;
}

void OptionsDialog::accept() {
    if (takeOver()) QDialog::accept();
}

void OptionsDialog::saveSettings() {
    if (!takeOver()) return;
    SaveOptions(m_options, m_optionsPath); // a failed write is not reported
    QDialog::accept();
}

} // namespace zorvane
