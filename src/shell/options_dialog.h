#pragma once
// The Options dialog. It shows the options and the thread settings, and on OK
// or "Save settings" runs CheckOptionsDialog: its boxes appear in order, and a
// refusal puts every control back to the values the dialog opened with and
// keeps it open. "Save settings" also writes options.ini with SaveOptions and
// closes the dialog as OK does.
//
//   OptionsDialog dialog(languageId, dataDir / "options.ini", this);
//   dialog.setOptions(options);
//   dialog.setThreads(threads);
//   dialog.setPhysicalMemory(bytes);             // for the MB/GB beside the ratios
//   dialog.setMessageSink(...);                  // optional; message boxes by default
//   if (dialog.exec() == QDialog::Accepted) { options = dialog.options(); threads = dialog.threads(); }
//
// What follows from changed values (a new limit of the temporary registers,
// say) is the caller's business.
#include "options/localized_text.h"
#include "options/options.h"

#include <QDialog>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;

namespace zorvane {

enum class OptionsControl;

class OptionsDialog : public QDialog {
    Q_OBJECT
  public:
    // Shows one box; `caption` and `text` are in the dialog's language.
    using MessageSink = std::function<void(MessageTitle title, const QString& caption, const QString& text)>;

    OptionsDialog(int languageId, std::filesystem::path optionsPath, QWidget* parent = nullptr);

    // The values the dialog opens with; a refused OK comes back to them.
    void setOptions(const Options& options);
    void setThreads(int threads);
    // Values in force: those set, or those taken over by OK or "Save settings".
    const Options& options() const { return m_options; }
    int threads() const { return m_threads; }

    // Physical memory in bytes; 0 leaves the sizes beside the ratios empty.
    void setPhysicalMemory(std::uint64_t bytes);
    void setMessageSink(MessageSink sink) { m_sink = std::move(sink); }

    void accept() override;

  private:
    QString text(OptionsControl control) const;
    QString tooltip(OptionsControl control) const;
    bool takeOver();
    void saveSettings();
    void showValues(const Options& options, int threads);
    void showMemoryLimits();

    int m_language;
    std::filesystem::path m_optionsPath;
    Options m_before;
    int m_threadsBefore = 1;
    Options m_options;
    int m_threads = 1;
    std::uint64_t m_physicalMemory = 0;
    MessageSink m_sink;

    QLineEdit* m_threadsEdit;
    QLineEdit* m_levelsEdit;
    QButtonGroup* m_quickMode;
    QLineEdit* m_tempRegRatio;
    QLabel* m_tempRegLimit;
    QLineEdit* m_schedulerLevels;
    QCheckBox* m_customScheduler;
    QCheckBox* m_mainVariantAsSort;
    QLineEdit* m_observerLevels;
    QLineEdit* m_precalcRatio;
    QLabel* m_precalcLimit;
    QLineEdit* m_lichessLevels;
    QCheckBox* m_clearRegister;
    QCheckBox* m_promptHeuristics;
    QCheckBox* m_showMainVariant;
    QButtonGroup* m_minimizeToTray;
    QCheckBox* m_logMoves;
    QButtonGroup* m_secondInstance;
    QCheckBox* m_manualEngineControl;
};

} // namespace zorvane
