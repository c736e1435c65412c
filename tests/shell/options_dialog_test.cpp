// The Options dialog driven through its controls: what it shows, the boxes of
// OK in their order, the revert on a refusal, and "Save settings".
#include "options/options.h"
#include "shell/options_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

using namespace zorvane;

namespace {

struct Shown {
    MessageTitle title;
    QString caption;
    QString text;
};

const QString PRECALC_IMPROPER =
    QStringLiteral("Improper value in field with memory ratio for precalculated data.");
const QString TEMP_IMPROPER = QStringLiteral("Improper value in field with memory ratio for temporary data.");
const QString SCHEDULER_INVALID = QStringLiteral("Invalid number of scheduler levels (min=0, max=9)");
const QString LICHESS_INVALID = QStringLiteral(
    "Invalid number of levels of analysis with solutions dowanloaded from ... (min=-1, max=255)");
const QString LEVELS_ADJUSTED =
    QStringLiteral("Improper value in multithreading levels option: value truncated/adjusted");
const QString TOO_MANY = QStringLiteral("Too many threads and/or multithreading levels.");
const QString MANUAL_CAUTION = QStringLiteral(
    "Note that manual engine control (reachable from context menu in progress info area) should be used very "
    "carefully, otherwise can result in skipping solutions or false positives.");
const QString LOG_WITH_SCHEDULER =
    QStringLiteral("Full analysis logging is on. It is highly recommended to switch "
                   "off scheduler for readability/linearity of log records.");
const QString CUSTOM_OFF = QStringLiteral("Note: Due to SchedulerLevels=0, Custom scheduler will be off");

std::string readFile(const QString& path) {
    std::ifstream in(path.toStdString(), std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

} // namespace

class OptionsDialogTest : public QObject {
    Q_OBJECT

  private slots:
    void init() {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        open(1);
    }
    void cleanup() {
        dialog.reset();
        dir.reset();
        shown.clear();
    }

    void defaultsShowSchedulerSixAndSaveWritesFive() {
        std::vector<LocalizedText> warnings;
        dialog->setOptions(LoadOptions(iniPath(), warnings));
        QCOMPARE(edit("schedulerLevelsEdit")->text(), QStringLiteral("6"));
        click("saveButton");
        QVERIFY(shown.empty());
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        const std::string saved = readFile(QString::fromStdString(iniPath().string()));
        QVERIFY(saved.find("\nSchedulerLevels=5\n") != std::string::npos);
    }

    void controlsShowTheOptions() {
        Options o;
        o.QuickMode = false;
        o.MaxMemRatioForTempReg = 35;
        o.SchedulerLevels = 3;
        o.CustomScheduler = false;
        o.UseMainVariantAsSortIndications = true;
        o.ObserverLevels = 2;
        o.MaxMemRatioForPrecalculatedData = 45;
        o.LichessLevels = -1;
        o.ClearRegisterOnStartSolving = false;
        o.PromptHeuristics = true;
        o.ShowMainVariant = false;
        o.MinimizeToTray = 1;
        o.LogMoves = true;
        o.WarnAboutSecondInstanceOfProgram = 0;
        o.EnableManualEngineControl = true;
        o.MultithreadingLevels = 2;
        dialog->setOptions(o);
        dialog->setThreads(3);
        QCOMPARE(edit("threadsEdit")->text(), QStringLiteral("3"));
        QCOMPARE(edit("levelsEdit")->text(), QStringLiteral("2"));
        QVERIFY(radio("quickModeNo")->isChecked());
        QVERIFY(!radio("quickModeYes")->isChecked());
        QCOMPARE(edit("tempRegRatioEdit")->text(), QStringLiteral("35"));
        QCOMPARE(edit("schedulerLevelsEdit")->text(), QStringLiteral("3"));
        QVERIFY(!box("customSchedulerCheck")->isChecked());
        QVERIFY(box("mainVariantAsSortCheck")->isChecked());
        QCOMPARE(edit("observerLevelsEdit")->text(), QStringLiteral("2"));
        QCOMPARE(edit("precalcRatioEdit")->text(), QStringLiteral("45"));
        QCOMPARE(edit("lichessLevelsEdit")->text(), QStringLiteral("-1"));
        QVERIFY(!box("clearRegisterCheck")->isChecked());
        QVERIFY(box("promptHeuristicsCheck")->isChecked());
        QVERIFY(!box("showMainVariantCheck")->isChecked());
        QVERIFY(radio("minimizeAlways")->isChecked());
        QVERIFY(box("logMovesCheck")->isChecked());
        QVERIFY(radio("secondInstanceNo")->isChecked());
        QVERIFY(box("manualEngineControlCheck")->isChecked());

        // Nothing changed: OK takes the same values over, with the note on logging.
        click("okButton");
        QCOMPARE(texts(), QStringList{LOG_WITH_SCHEDULER});
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(dialog->options() == o);
        QCOMPARE(dialog->threads(), 3);
    }

    void choicesAreTakenOver() {
        QTest::mouseClick(radio("quickModeNo"), Qt::LeftButton);
        QTest::mouseClick(radio("minimizeNever"), Qt::LeftButton);
        QTest::mouseClick(radio("secondInstanceStatusBar"), Qt::LeftButton);
        QTest::mouseClick(box("showMainVariantCheck"), Qt::LeftButton);
        type("observerLevelsEdit", "12");
        type("lichessLevelsEdit", "-1");
        click("okButton");
        QVERIFY(shown.empty());
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(!dialog->options().QuickMode);
        QCOMPARE(dialog->options().MinimizeToTray, 0);
        QCOMPARE(dialog->options().WarnAboutSecondInstanceOfProgram, 2);
        QVERIFY(!dialog->options().ShowMainVariant);
        QCOMPARE(dialog->options().ObserverLevels, std::uint16_t(12));
        QCOMPARE(dialog->options().LichessLevels, std::int16_t(-1));
    }

    void minimizeToTraySevenIsKeptWhenUntouched() {
        Options o;
        o.MinimizeToTray = 7;
        dialog->setOptions(o);
        QVERIFY(!radio("minimizeNever")->isChecked());
        QVERIFY(!radio("minimizeAlways")->isChecked());
        QVERIFY(!radio("minimizeWithCtrl")->isChecked());
        click("okButton");
        QCOMPARE(dialog->options().MinimizeToTray, 7);
    }

    void checksSpeakInTheirOrderAndRevertEverything() {
        dialog->setThreads(4);
        QTest::mouseClick(radio("quickModeNo"), Qt::LeftButton);
        type("precalcRatioEdit", "101");
        type("tempRegRatioEdit", "abc");
        type("threadsEdit", "7");
        click("okButton");
        QCOMPARE(texts(), QStringList{PRECALC_IMPROPER});
        QCOMPARE(shown[0].title, MessageTitle::Error);
        QCOMPARE(shown[0].caption, QStringLiteral("Error"));
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->result(), int(QDialog::Rejected));
        // Every control is back where the dialog opened.
        QCOMPARE(edit("precalcRatioEdit")->text(), QStringLiteral("20"));
        QCOMPARE(edit("tempRegRatioEdit")->text(), QStringLiteral("20"));
        QCOMPARE(edit("threadsEdit")->text(), QStringLiteral("4"));
        QVERIFY(radio("quickModeYes")->isChecked());
        QVERIFY(dialog->options() == Options{});

        shown.clear();
        type("tempRegRatioEdit", "101");
        click("okButton");
        QCOMPARE(texts(), QStringList{TEMP_IMPROPER});
    }

    void schedulerLevelsTenAreRefusedNineTaken() {
        type("schedulerLevelsEdit", "10");
        click("okButton");
        QCOMPARE(texts(), QStringList{SCHEDULER_INVALID});
        QVERIFY(dialog->isVisible());
        QCOMPARE(edit("schedulerLevelsEdit")->text(), QStringLiteral("6"));
        shown.clear();
        type("schedulerLevelsEdit", "");
        click("okButton");
        QCOMPARE(texts(), QStringList{SCHEDULER_INVALID});
        shown.clear();
        type("schedulerLevelsEdit", "9");
        click("okButton");
        QVERIFY(shown.empty());
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->options().SchedulerLevels, 9);
    }

    void remoteLevelsOutOfRangeAreRefused() {
        type("lichessLevelsEdit", "256");
        click("okButton");
        QCOMPARE(texts(), QStringList{LICHESS_INVALID});
        shown.clear();
        type("lichessLevelsEdit", "-2");
        click("okButton");
        QCOMPARE(texts(), QStringList{LICHESS_INVALID});
    }

    void levelsAreAdjustedWithANote() {
        dialog->setThreads(2);
        type("levelsEdit", "-3");
        click("okButton");
        QCOMPARE(texts(), QStringList{LEVELS_ADJUSTED});
        QCOMPARE(shown[0].caption, QStringLiteral("Warning"));
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->options().MultithreadingLevels, 0);
        QCOMPARE(dialog->threads(), 2);
    }

    void threadsAreClampedAndOneThreadMeansOneLevel() {
        type("threadsEdit", "1");
        type("levelsEdit", "40");
        click("okButton");
        QVERIFY(shown.empty());
        QCOMPARE(dialog->threads(), 1);
        QCOMPARE(dialog->options().MultithreadingLevels, 1);
        open(1);
        type("threadsEdit", "500");
        click("okButton");
        QVERIFY(shown.empty());
        QCOMPARE(dialog->threads(), 64);
    }

    void tooManyThreadsAreRefused() {
        dialog->setThreads(4);
        type("threadsEdit", "2");
        type("levelsEdit", "15");
        click("okButton");
        QCOMPARE(texts(), QStringList{TOO_MANY});
        QVERIFY(dialog->isVisible());
        QCOMPARE(edit("threadsEdit")->text(), QStringLiteral("4"));
        QCOMPARE(edit("levelsEdit")->text(), QStringLiteral("1"));
        shown.clear();
        type("threadsEdit", "2");
        type("levelsEdit", "14");
        click("okButton");
        QVERIFY(shown.empty());
        QCOMPARE(dialog->options().MultithreadingLevels, 14);
    }

    void notesFollowTheTakeOverInOrder() {
        QTest::mouseClick(box("manualEngineControlCheck"), Qt::LeftButton);
        QTest::mouseClick(box("logMovesCheck"), Qt::LeftButton);
        click("okButton");
        QCOMPARE(texts(), (QStringList{MANUAL_CAUTION, LOG_WITH_SCHEDULER}));
        QCOMPARE(shown[0].caption, QStringLiteral("Warning"));
        QVERIFY(dialog->options().EnableManualEngineControl);
        QVERIFY(dialog->options().LogMoves);
    }

    void schedulerOffSwitchesTheCustomSchedulerOff() {
        QVERIFY(box("customSchedulerCheck")->isChecked());
        type("schedulerLevelsEdit", "0");
        click("okButton");
        QCOMPARE(texts(), QStringList{CUSTOM_OFF});
        QCOMPARE(shown[0].caption, QStringLiteral("Information"));
        QCOMPARE(dialog->options().SchedulerLevels, 0);
        QVERIFY(!dialog->options().CustomScheduler);
    }

    void saveWritesTheDialogsKeysAndKeepsTheRest() {
        {
            std::ofstream out(iniPath(), std::ios::binary);
            out << "[chess]\nLanguageId=2\nMine=x\n";
        }
        dialog->setThreads(2);
        type("schedulerLevelsEdit", "0");
        QTest::mouseClick(box("customSchedulerCheck"), Qt::LeftButton);
        type("levelsEdit", "2");
        click("saveButton");
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(
            readFile(QString::fromStdString(iniPath().string())),
            std::string("[chess]\nLanguageId=2\nMine=x\nQuickMode=1\nSchedulerLevels=-1\nCustomScheduler=0\n"
                        "ObserverLevels=0\nLichessLevels=1\nWarnAboutSecondInstanceOfProgram=2\n"
                        "PromptHeuristics=0\nMaxMemRatioForTempReg=20\nClearRegisterOnStartSolving=1\n"
                        "MaxMemRatioForPrecalculatedData=20\nLetAnalyzeTheSameMoveInTwoThreads=1\n"
                        "CommentCompatibilityMode=0\nShowMainVariant=1\nUseMainVariantAsSortIndications=0\n"
                        "LogMoves=0\nRegisterInfoLog=0\nTryRelaxSpecialHeuristicsLog=0\nMinimizeToTray=2\n"
                        "GlobalRegisterForceDiskAccess=1\nMultithreadingLevels=2\n"
                        "EnableManualEngineControl=0\n"));
        // The levels saved come back as one at the next start.
        std::vector<LocalizedText> warnings;
        QCOMPARE(LoadOptions(iniPath(), warnings).MultithreadingLevels, 1);
    }

    void refusedSaveWritesNothing() {
        type("precalcRatioEdit", "101");
        click("saveButton");
        QCOMPARE(texts(), QStringList{PRECALC_IMPROPER});
        QVERIFY(dialog->isVisible());
        QVERIFY(!QFileInfo::exists(QString::fromStdString(iniPath().string())));
    }

    void cancelKeepsTheOptions() {
        type("schedulerLevelsEdit", "2");
        click("cancelButton");
        QCOMPARE(dialog->result(), int(QDialog::Rejected));
        QCOMPARE(dialog->options().SchedulerLevels, 6);
    }

    void everyControlHasATooltip() {
        const auto widgets = dialog->findChildren<QWidget*>();
        int controls = 0;
        for (QWidget* w : widgets) {
            if (!qobject_cast<QLineEdit*>(w) && !qobject_cast<QCheckBox*>(w) &&
                !qobject_cast<QRadioButton*>(w))
                continue;
            ++controls;
            QVERIFY2(!w->toolTip().isEmpty(), qPrintable(w->objectName()));
        }
        QCOMPARE(controls, 7 + 2 + 7 + 3 + 3); // fields, quick mode, check boxes, two radio rows
        QVERIFY(!button("saveButton")->toolTip().isEmpty());
        QCOMPARE(button("saveButton")->text(), QStringLiteral("&Save settings"));
        QCOMPARE(radio("quickModeYes")->text(), QStringLiteral("Yes (quick mode)"));
        QCOMPARE(box("mainVariantAsSortCheck")->text(),
                 QStringLiteral("Use main variant as sort indications for engine (can speed up solving)"));
        QVERIFY(labelWith(QStringLiteral("Num.of scheduler levels (default=6, off=0)")));
        QVERIFY(labelWith(QStringLiteral("Note that thread settings will not be saved")));
    }

    void polishDialogSpeaksPolish() {
        open(0);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Opcje"));
        QCOMPARE(button("saveButton")->text(), QStringLiteral("&Zapisz ustawienia"));
        QCOMPARE(radio("quickModeYes")->toolTip().left(20), QStringLiteral("Tak (tryb szybki): p"));
        type("precalcRatioEdit", "x");
        click("okButton");
        QCOMPARE(texts(),
                 QStringList{QString::fromWCharArray(
                     L"Niepoprawna wartość w polu z procentem pamięci dla danych prekalkulowanych.")});
        QCOMPARE(shown[0].caption, QString::fromWCharArray(L"Błąd"));
    }

    void ukrainianDialogSpeaksUkrainian() {
        open(2);
        type("schedulerLevelsEdit", "10");
        click("okButton");
        QCOMPARE(texts(), QStringList{QString::fromWCharArray(
                              L"Неправильна кількість рівнів планувальника (min=0, max=9)")});
        QCOMPARE(shown[0].caption, QString::fromWCharArray(L"Помилка"));
    }

    void otherLanguagesSpeakEnglish() {
        open(5);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Options"));
    }

    void withoutASinkTheMessageIsAModalBox() {
        dialog = std::make_unique<OptionsDialog>(1, iniPath());
        dialog->show();
        type("lichessLevelsEdit", "300");
        QString boxText;
        QString boxTitle;
        QTimer::singleShot(0, [&] {
            QWidget* modal = QApplication::activeModalWidget();
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                boxText = box->text();
                boxTitle = box->windowTitle();
            }
            if (modal) modal->close(); // whatever it is, the test must not hang on it
        });
        click("okButton");
        QCOMPARE(boxText, LICHESS_INVALID);
        QCOMPARE(boxTitle, QStringLiteral("Error"));
        QVERIFY(dialog->isVisible());
    }

    void memoryLimitsShowBesideTheRatios() {
        QCOMPARE(label("tempRegLimitLabel")->text(), QString());
        dialog->setPhysicalMemory(16ull << 30);
        QCOMPARE(label("tempRegLimitLabel")->text(), QStringLiteral("3.2 GB"));
        QCOMPARE(label("precalcLimitLabel")->text(), QStringLiteral("3.2 GB"));
        type("tempRegRatioEdit", "50");
        QCOMPARE(label("tempRegLimitLabel")->text(), QStringLiteral("8.0 GB"));
        type("precalcRatioEdit", "1");
        QCOMPARE(label("precalcLimitLabel")->text(), QStringLiteral("163 MB"));
        type("precalcRatioEdit", "101");
        QCOMPARE(label("precalcLimitLabel")->text(), QString());
    }

  private:
    void open(int language) {
        dialog = std::make_unique<OptionsDialog>(language, iniPath());
        dialog->setMessageSink([this](MessageTitle title, const QString& caption, const QString& text) {
            shown.push_back({title, caption, text});
        });
        dialog->show();
    }
    std::filesystem::path iniPath() const {
        return std::filesystem::path(dir->path().toStdString()) / "options.ini";
    }

    template <typename T> T* child(const char* name) const {
        T* widget = dialog->findChild<T*>(QString::fromLatin1(name));
        if (!widget) qFatal("no control %s", name);
        return widget;
    }
    QLineEdit* edit(const char* name) const { return child<QLineEdit>(name); }
    QCheckBox* box(const char* name) const { return child<QCheckBox>(name); }
    QRadioButton* radio(const char* name) const { return child<QRadioButton>(name); }
    QPushButton* button(const char* name) const { return child<QPushButton>(name); }
    QLabel* label(const char* name) const { return child<QLabel>(name); }
    bool labelWith(const QString& text) const {
        for (QLabel* l : dialog->findChildren<QLabel*>())
            if (l->text() == text && !l->toolTip().isEmpty()) return true;
        return false;
    }

    void type(const char* name, const QString& text) {
        QLineEdit* field = edit(name);
        field->clear();
        QTest::keyClicks(field, text);
    }
    void click(const char* name) { QTest::mouseClick(button(name), Qt::LeftButton); }
    QStringList texts() const {
        QStringList list;
        for (const Shown& s : shown) list << s.text;
        return list;
    }

    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<OptionsDialog> dialog;
    std::vector<Shown> shown;
};

QTEST_MAIN(OptionsDialogTest)
#include "options_dialog_test.moc"
