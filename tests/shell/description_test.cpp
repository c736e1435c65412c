// The problem's description in the window: edited in place (Enter starts and
// commits, Esc gives the old text back, command 325 starts too), saved and
// read back, refused over a collection loaded in part; and its database links
// with the description menu's commands 320 and 321.
#include "scripted_prompts.h"
#include "shell/command_table.h"
#include "shell/description_links.h"
#include "shell/main_window.h"
#include "solving_session.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QTest>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "../files_on_disk.h"

using namespace zorvane;
namespace fs = std::filesystem;

namespace {

const QString DESCRIPTION_TIP = QStringLiteral(
    "Change description. You can use links to Pdb/Yacpdb/Meson/Albrecht/Gameknot/chessStar, e.g. Y123");

std::string readText(const QString& path) {
    return ReadBytes(path.toStdString());
}
void writeText(const QString& path, const std::string& text) {
    WriteBytes(path.toStdString(), text);
}

QLabel* descriptionLabel(Session& s) {
    return s.window->findChild<QLabel*>(QStringLiteral("problemText"));
}

QLabel* linkLabel(Session& s) {
    return s.window->findChild<QLabel*>(QStringLiteral("descriptionLink"));
}

// Types `text` into the open editor over what it holds.
void typeDescription(Session& s, const QString& text) {
    QLineEdit* editor = s.window->descriptionEditor();
    editor->selectAll();
    QTest::keyClicks(editor, text);
}

} // namespace

class DescriptionTest : public QObject {
    Q_OBJECT
  private slots:
    void enterStartsAndEnterCommitsIntoTheProblem() {
        Session s;
        startOnSample(s);
        QVERIFY(!s.window->isEditingDescription());
        QTest::keyClick(s.window.get(), Qt::Key_Return);
        QVERIFY(s.window->isEditingDescription());
        QCOMPARE(s.window->descriptionEditor()->text(), QStringLiteral("Back rank"));
        QVERIFY(descriptionLabel(s)->isHidden());
        typeDescription(s, QStringLiteral("Back rank, Y123"));
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Return);
        QVERIFY(!s.window->isEditingDescription());
        QCOMPARE(s.window->problems().Current()->description, std::wstring(L"Back rank, Y123"));
        QCOMPARE(descriptionLabel(s)->text(), QStringLiteral("1. #1 Back rank, Y123"));
        // The problem, and so the collection, counts as changed.
        QVERIFY(s.window->problems().IsCurrentProblemChanged());
        QVERIFY(s.prompts.boxes.isEmpty());
    }

    void escGivesTheOldTextBack() {
        Session s;
        startOnSample(s);
        QTest::keyClick(s.window.get(), Qt::Key_Return);
        typeDescription(s, QStringLiteral("something else"));
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Escape);
        QVERIFY(!s.window->isEditingDescription());
        QCOMPARE(s.window->problems().Current()->description, std::wstring(L"Back rank"));
        QCOMPARE(descriptionLabel(s)->text(), QStringLiteral("1. #1 Back rank"));
        QVERIFY(!s.window->problems().IsCurrentProblemChanged());
    }

    void theWindowsKeysWaitWhileTheEditorIsOpen() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::DescriptionEdit);
        QVERIFY(s.window->isEditingDescription());
        // Ctrl+Shift+Right would go to the next problem; in the editor it is the editor's.
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Right,
                        Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(s.current(), 1);
        QVERIFY(s.window->isEditingDescription());
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Escape);
        // Closed, the same keys are the window's again.
        QTest::keyClick(s.window.get(), Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(s.current(), 2);
    }

    void anotherProblemShownDropsTheEditorsText() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::DescriptionEdit);
        typeDescription(s, QStringLiteral("meant for the first"));
        s.window->problems().NavigateToProblem(Navigation::ById, 2);
        s.window->showCurrentProblem();
        QVERIFY(!s.window->isEditingDescription());
        QCOMPARE(s.window->problems().Current()->description, std::wstring(L"The king steps aside"));
        QCOMPARE(s.window->problems().problems.at(1)->description, std::wstring(L"Back rank"));
    }

    void anotherCommandClosesTheEditorWithItsText() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::DescriptionEdit);
        typeDescription(s, QStringLiteral("edited"));
        s.window->DispatchCommand(CommandId::ProblemNext);
        // Leaving a changed problem asks about its changes; No throws them away.
        QVERIFY(!s.window->isEditingDescription());
        QCOMPARE(
            s.prompts.boxes.value(0),
            QStringLiteral("Question|There are changes in the current problem.\nDo you want to save them?"));
    }

    void theMenuTextsAndTheToolTip() {
        Session s;
        startOnSample(s);
        QCOMPARE(s.text(CommandId::DescriptionOpenLink), QStringLiteral("Open page in default browser"));
        QCOMPARE(s.text(CommandId::DescriptionCopyAddress), QStringLiteral("Copy address to clipboard"));
        QCOMPARE(s.text(CommandId::DescriptionEdit), QStringLiteral("Edit problem description..."));
        QCOMPARE(descriptionLabel(s)->toolTip(), DESCRIPTION_TIP);
        QMenu* menu = s.window->commands().popup(MENU_DESCRIPTION);
        QVERIFY(menu);
        QCOMPARE(menu->actions().size(), 3);
        s.window->ApplyLanguage(0);
        QCOMPARE(s.text(CommandId::DescriptionEdit), QStringLiteral("Edytuj opis problemu..."));
        QCOMPARE(descriptionLabel(s)->toolTip(),
                 QStringLiteral("Zmień opis. Możesz użyć odnośników do Pdb/Yacpdb/Meson/Albrecht/Gameknot/"
                                "chessStar, np. Y123"));
        s.window->ApplyLanguage(2);
        QCOMPARE(s.text(CommandId::DescriptionOpenLink),
                 QStringLiteral("Відкрити сторінку в типовому браузері"));
        s.window->ApplyLanguage(1);
    }

    void aLinkOpensAndCopiesItsPage() {
        Session s;
        startOnSample(s);
        // Without a code the link commands are greyed.
        QVERIFY(!s.enabled(CommandId::DescriptionOpenLink));
        QVERIFY(!s.enabled(CommandId::DescriptionCopyAddress));
        QVERIFY(s.enabled(CommandId::DescriptionEdit));
        QVERIFY(linkLabel(s)->isHidden());
        s.window->DispatchCommand(CommandId::DescriptionEdit);
        typeDescription(s, QStringLiteral("From the Yacpdb, Y123"));
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Return);
        QVERIFY(s.enabled(CommandId::DescriptionOpenLink));
        QVERIFY(s.enabled(CommandId::DescriptionCopyAddress));
        QVERIFY(!linkLabel(s)->isHidden());
        QVERIFY(linkLabel(s)->text().contains(QStringLiteral(">Y123</a>")));
        QList<QUrl> opened;
        s.window->openUrl = [&opened](const QUrl& url) {
            opened << url;
            return true;
        };
        s.window->DispatchCommand(CommandId::DescriptionOpenLink);
        QCOMPARE(opened, QList<QUrl>{QUrl(QStringLiteral("https://www.yacpdb.org/#123"))});
        s.window->DispatchCommand(CommandId::DescriptionCopyAddress);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("https://www.yacpdb.org/#123"));
        // A click on the link opens it too.
        emit linkLabel(s)->linkActivated(QStringLiteral("https://www.yacpdb.org/#123"));
        QCOMPARE(opened.size(), 2);
    }

    void theCodesOfTheDatabases() {
        QCOMPARE(FindDescriptionLink(QStringLiteral("P1234567"))->url,
                 QUrl(QStringLiteral("https://pdb.dieschwalbe.de/P1234567")));
        QCOMPARE(FindDescriptionLink(QStringLiteral("see M77 there"))->code, QStringLiteral("M77"));
        QVERIFY(FindDescriptionLink(QStringLiteral("G5"))->url.toString().endsWith(QStringLiteral("5")));
        QVERIFY(FindDescriptionLink(QStringLiteral("A42"))->url.toString().endsWith(QStringLiteral("/42")));
        QVERIFY(FindDescriptionLink(QStringLiteral("C9"))->url.toString().endsWith(QStringLiteral("/9")));
        QVERIFY(!FindDescriptionLink(QStringLiteral("Back rank")));
        QVERIFY(!FindDescriptionLink(QStringLiteral("XY123")));
        QVERIFY(!FindDescriptionLink(QStringLiteral("Y123a")));
        QVERIFY(!FindDescriptionLink(QStringLiteral("#3 by Y. Author")));
    }

    void anEditedDescriptionIsSavedAndReadBack() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::DescriptionEdit);
        typeDescription(s, QStringLiteral("Edited in place, Y42"));
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Return);
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QVERIFY(!s.window->problems().IsCurrentProblemChanged());
        QVERIFY(readText(s.sample()).find("Description: Edited in place, Y42") != std::string::npos);
        // A second start reads it back.
        Session again;
        const QString copy = again.path(QStringLiteral("again.cp"));
        writeText(copy, readText(s.sample()));
        start(again, copy);
        QCOMPARE(again.window->problems().Current()->description, std::wstring(L"Edited in place, Y42"));
        QVERIFY(again.enabled(CommandId::DescriptionOpenLink));
    }

    void savingOverACollectionLoadedInPartIsRefusedByDefault() {
        Session s;
        const QString file = s.path(QStringLiteral("broken.cp"));
        writeText(file, "UTF-8\n\n1 #2\n{\n\tDescription: problem 1\n\tFEN: 4k3/8/8/8/8/8/8/K7\n}\n\n"
                        "2 #2\n{\n\tDescription: problem 2\n\tFEN: 4k3/8/8/8/8/8/8/KX7\n}\n\n"
                        "3 #2\n{\n\tDescription: problem 3\n\tFEN: 4k3/8/8/8/8/8/8/1K6\n}\n\n");
        start(s, file);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        QTest::keyClick(s.window.get(), Qt::Key_Return);
        typeDescription(s, QStringLiteral("problem 1, edited"));
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Return);
        QVERIFY(s.window->problems().IsCurrentProblemChanged());
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(
            s.prompts.boxes,
            (QStringList{QStringLiteral("Question|This file was loaded in part: it holds 2 problem(s) beyond "
                                        "the ones shown.\nSaving writes over the file, and they will be "
                                        "lost.\n\nDo you want to write over the file anyway? (No keeps the "
                                        "file; Save as writes to another one)"),
                         QStringLiteral("(unanswered)")}));
        QCOMPARE(s.prompts.questionButtons, QList<Buttons>{Buttons::YesNoDefaultNo});
        QCOMPARE(readText(file), before);
        // The edit stays in the window, still unsaved.
        QCOMPARE(s.window->problems().Current()->description, std::wstring(L"problem 1, edited"));
        QVERIFY(s.window->problems().IsCurrentProblemChanged());
        s.prompts.answers = {Answer::No};
    }

    void aScreenshotOfTheEditorOpenDuringASolve() {
        // For the documentation: a problem whose description is being edited
        // while its solve runs, the progress panel showing the line analysed.
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        const QRegularExpression line(QStringLiteral(R"(\n1\.\S+ \(\d+/\d+\) 1\.\.\.\S+ \(\d+/\d+\) 2\.)"));
        QTRY_VERIFY_WITH_TIMEOUT(line.match(s.window->progressPanel()->text()).hasMatch(), 10000);
        s.window->DispatchCommand(CommandId::DescriptionEdit);
        typeDescription(s, QStringLiteral("The opening position: no mate in nine, Y123"));
        QCoreApplication::processEvents();
        const QString file = QStringLiteral(ZORVANE_BINARY_DIR "/window_description_editing.png");
        QVERIFY(s.window->grab().save(file));
        QVERIFY(QFile::exists(file));
        QTest::keyClick(s.window->descriptionEditor(), Qt::Key_Escape);
        s.window->DispatchCommand(CommandId::SolveStop);
    }
};

QTEST_MAIN(DescriptionTest)
#include "description_test.moc"
