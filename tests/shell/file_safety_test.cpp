// The window never writes away problems that it did not read: a collection
// that stopped loading at an error is marked in the title and the status, and
// every command that would write over it asks first, No by default. A file
// named on the command line that does not exist is made only when wanted.
#include "scripted_prompts.h"
#include "window_session.h"
#include "shell/main_window.h"
#include "shell/prompts.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace zorvane;
namespace fs = std::filesystem;

namespace {

// A position of its own for each number: the save's question about equal
// positions stays out of the way.
std::string fenOf(int id) {
    return "4k3/8/8/8/8/8/8/" + (id > 1 ? std::to_string(id - 1) : std::string()) + "K" +
           std::to_string(8 - id);
}

void writeText(const QString& path, const std::string& text) {
    std::ofstream out(fs::path(path.toStdString()), std::ios::binary);
    out << text;
}

std::string readText(const QString& path) {
    std::ifstream in(fs::path(path.toStdString()), std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string block(int id, const std::string& fen) {
    return std::to_string(id) + " #2\n{\n\tDescription: problem " + std::to_string(id) + "\n\tFEN: " + fen +
           "\n}\n\n";
}

// Five problems, the third one's FEN broken by a letter too many.
std::string brokenCollection() {
    std::string text = "UTF-8\n\n";
    for (int id = 1; id <= 5; ++id) text += block(id, id == 3 ? fenOf(id) + "X" : fenOf(id));
    return text;
}

QString partQuestion(int notLoaded) {
    return QStringLiteral("Question|This file was loaded in part: it holds ") + QString::number(notLoaded) +
           QStringLiteral(" problem(s) beyond the ones shown.\nSaving writes over the file, and they will be "
                          "lost.\n\nDo you want to write over the file anyway? (No keeps the file; Save as "
                          "writes to another one)");
}

const QString PART_STATUS = QStringLiteral("The file was loaded in part: 2 problem(s) read, 3 more in the "
                                           "file not read.\nSaving over this file asks first.");
const QString CHANGES_QUESTION =
    QStringLiteral("Question|There are changes in the current problem.\nDo you want to save them?");

// The window on the broken collection "broken.cp"; gives its path.
QString startOnBroken(Session& s) {
    const QString file = s.path(QStringLiteral("broken.cp"));
    writeText(file, brokenCollection());
    start(s, file);
    return file;
}

} // namespace

class FileSafetyTest : public QObject {
    Q_OBJECT

  private slots:
    void aBrokenCollectionShowsWhatWasReadAndSaysSo() {
        Session s;
        const QString file = startOnBroken(s);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Error|Error parsing problem 3: Improper FEN code")});
        QCOMPARE(s.window->problems().problems.size(), size_t{2});
        QCOMPARE(s.current(), 1);
        QCOMPARE(s.window->problems().Current()->description, std::wstring(L"problem 1"));
        QCOMPARE(s.window->windowTitle(),
                 QStringLiteral("Zorvane - ") + file + QStringLiteral(" (loaded in part)"));
        QCOMPARE(s.window->statusText(), PART_STATUS);
    }

    void ctrlSWithTheDefaultAnswerKeepsTheFileByteForByte() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        s.window->DispatchCommand(CommandId::FileSaveKey); // Ctrl+S
        QCOMPARE(s.prompts.boxes, (QStringList{partQuestion(3), QStringLiteral("(unanswered)")}));
        QCOMPARE(s.prompts.questionButtons, QList<Buttons>{Buttons::YesNoDefaultNo});
        QCOMPARE(readText(file), before);
        s.window->DispatchCommand(CommandId::FileSave); // the menu's Save asks again
        QCOMPARE(s.prompts.boxes.size(), 4);
        QCOMPARE(readText(file), before);
        QVERIFY(s.window->windowTitle().endsWith(QStringLiteral(" (loaded in part)")));
    }

    void yesWritesTheFileAndTakesTheMarkAway() {
        Session s;
        const QString file = startOnBroken(s);
        s.prompts.boxes.clear();
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(s.prompts.boxes, QStringList{partQuestion(3)});
        const std::string written = readText(file);
        QVERIFY(written.find("problem 2") != std::string::npos);
        QVERIFY(written.find("problem 3") == std::string::npos);
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - ") + file);
        // Agreed once: the next save asks no more.
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(s.prompts.boxes.size(), 1);
    }

    void quittingWithChangesAsksAndNoStaysInTheProgram() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        s.window->problems().Current()->tags.insert(L"mine");
        s.prompts.answers = {Answer::Yes}; // save the changes; the file question takes its default
        QVERIFY(!s.window->close());
        QCOMPARE(s.prompts.boxes,
                 (QStringList{CHANGES_QUESTION, partQuestion(3), QStringLiteral("(unanswered)")}));
        QCOMPARE(readText(file), before);
        QCOMPARE(s.window->problems().Current()->tags, std::set<std::wstring>{L"mine"});
    }

    void openingAnotherFileWithChangesAsksToo() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.copySample();
        s.prompts.boxes.clear();
        s.window->problems().Current()->tags.insert(L"mine");
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::FileOpenSamples); // the sample problems
        QCOMPARE(s.prompts.boxes,
                 (QStringList{CHANGES_QUESTION, partQuestion(3), QStringLiteral("(unanswered)")}));
        QCOMPARE(readText(file), before);
        QCOMPARE(s.window->problems().problems.size(), size_t{2}); // the broken list stays open
    }

    void leavingAProblemWithChangesAsksToo() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        s.window->problems().Current()->tags.insert(L"mine");
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 1);
        QCOMPARE(s.prompts.boxes,
                 (QStringList{CHANGES_QUESTION, partQuestion(3), QStringLiteral("(unanswered)")}));
        QCOMPARE(readText(file), before);
    }

    void appendingAndRemovingProblemsAskBeforeTheirSave() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        writeText(s.path(QStringLiteral("other.cp")), block(1, "5k2/8/5K2/8/8/8/8/4R3") + block(2, fenOf(2)));
        s.prompts.boxes.clear();
        s.prompts.fileNames.push_back(s.path(QStringLiteral("other.cp")));
        s.prompts.answers = {Answer::Yes}; // save the appended problems
        s.window->DispatchCommand(CommandId::FileAppendProblems);
        QCOMPARE(s.prompts.boxes.value(1), partQuestion(3));
        QCOMPARE(readText(file), before);
        QCOMPARE(s.window->problems().problems.size(), size_t{2}); // not saved: the appended ones left
        s.prompts.boxes.clear();
        s.prompts.fileNames.push_back(s.path(QStringLiteral("other.cp")));
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::FileRemoveProblems);
        QCOMPARE(s.prompts.boxes.value(1), partQuestion(3));
        QCOMPARE(readText(file), before);
        QCOMPARE(s.window->problems().problems.size(), size_t{2});
    }

    void aNewFileOverTheCollectionAsks() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        s.prompts.fileNames.push_back(file);
        s.window->DispatchCommand(CommandId::FileNew);
        QCOMPARE(s.prompts.boxes, (QStringList{partQuestion(3), QStringLiteral("(unanswered)")}));
        QCOMPARE(readText(file), before);
    }

    void saveAsElsewhereAsksNothingAndTheCopyIsWhole() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        s.prompts.fileNames.push_back(s.path(QStringLiteral("copy.cp")));
        s.window->DispatchCommand(CommandId::FileSaveAs);
        QCOMPARE(s.prompts.boxes, QStringList());
        QCOMPARE(readText(file), before);
        QVERIFY(readText(s.path(QStringLiteral("copy.cp"))).find("problem 2") != std::string::npos);
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - copy.cp"));
        s.window->DispatchCommand(CommandId::FileSaveKey); // the copy holds the whole list
        QCOMPARE(s.prompts.boxes, QStringList());
    }

    void saveAsOverTheSameFileAsks() {
        Session s;
        const QString file = startOnBroken(s);
        const std::string before = readText(file);
        s.prompts.boxes.clear();
        s.prompts.fileNames.push_back(file);
        s.window->DispatchCommand(CommandId::FileSaveAs);
        QCOMPARE(s.prompts.boxes, (QStringList{partQuestion(3), QStringLiteral("(unanswered)")}));
        QCOMPARE(readText(file), before);
        QVERIFY(s.window->windowTitle().endsWith(QStringLiteral(" (loaded in part)")));
    }

    void aWholeLoadOfTheRepairedFileTakesTheMarkAway() {
        Session s;
        const QString file = startOnBroken(s);
        std::string repaired = readText(file);
        repaired.replace(repaired.find(fenOf(3) + "X"), fenOf(3).size() + 1, fenOf(3));
        writeText(file, repaired);
        s.prompts.boxes.clear();
        s.prompts.fileNames.push_back(file);
        s.window->DispatchCommand(CommandId::FileOpen);
        QCOMPARE(s.window->problems().problems.size(), size_t{5});
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - broken.cp"));
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(s.prompts.boxes, QStringList());
    }

    void anErrorInTheFirstProblemLeavesOneEmptyProblemAndTheMark() {
        Session s;
        const QString file = s.path(QStringLiteral("first.cp"));
        writeText(file, block(1, "8/8/9") + block(2, fenOf(2)));
        start(s, file);
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.window->problems().Current()->description, std::wstring());
        QCOMPARE(
            s.window->statusText(),
            QStringLiteral("The file was loaded in part: 0 problem(s) read, 2 more in the file not read.\n"
                           "Saving over this file asks first."));
        const std::string before = readText(file);
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(s.prompts.boxes.value(1), partQuestion(2));
        QCOMPARE(readText(file), before);
    }

    void theMarkInPolishAndUkrainian() {
        Session s;
        writeText(s.path(QStringLiteral("options.ini")), "[chess]\nLanguageId=0\n");
        const QString file = startOnBroken(s);
        QCOMPARE(s.window->windowTitle(),
                 QStringLiteral("Zorvane - ") + file + QStringLiteral(" (wczytany częściowo)"));
        QCOMPARE(s.window->statusText(),
                 QStringLiteral("Plik wczytano częściowo: wczytano 2 problem(ów), kolejnych 3 w pliku nie "
                                "wczytano.\nZapis do tego pliku wymaga potwierdzenia."));
        s.prompts.boxes.clear();
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(s.prompts.boxes.value(0),
                 QStringLiteral(
                     "Pytanie|Ten plik został wczytany częściowo: zawiera jeszcze 3 problem(ów) poza "
                     "wyświetlonymi.\nZapis nadpisze plik i zostaną one utracone.\n\nCzy mimo to chcesz "
                     "nadpisać plik? (Nie zachowuje plik; Zapisz jako zapisuje do innego)"));
        s.window->DispatchCommand(CommandId::LanguageUkrainian);
        QCOMPARE(s.window->windowTitle(),
                 QStringLiteral("Zorvane - ") + file + QStringLiteral(" (завантажено частково)"));

        Session u;
        writeText(u.path(QStringLiteral("options.ini")), "[chess]\nLanguageId=2\n");
        startOnBroken(u);
        QCOMPARE(
            u.window->statusText(),
            QStringLiteral("Файл завантажено частково: прочитано 2 задач(і), ще 3 у файлі не прочитано.\n"
                           "Збереження в цей файл потребує підтвердження."));
    }

    void theSharedCorpusBrokenInItsSixthProblem() {
        const QString corpus = QStringLiteral(ZORVANE_SHARED_DIR "/corpus/peer_examples.cp");
        if (!QFile::exists(corpus))
            QSKIP(qPrintable(QStringLiteral("the shared corpus is absent: ") + corpus));
        Session s;
        const std::string whole = readText(corpus);
        const size_t fen = whole.find("FEN: ", whole.find("\n6 #"));
        QVERIFY(fen != std::string::npos);
        const size_t lineEnd = whole.find_first_of("\r\n", fen);
        const std::string text = whole.substr(0, lineEnd) + "X" + whole.substr(lineEnd);
        const QString file = s.path(QStringLiteral("peer_examples.cp"));
        writeText(file, text);
        start(s, file);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Error|Error parsing problem 6: Improper FEN code")});
        QCOMPARE(s.window->problems().problems.size(), size_t{5});
        QVERIFY(s.window->windowTitle().endsWith(QStringLiteral("peer_examples.cp (loaded in part)")));
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QCOMPARE(s.prompts.boxes.value(1), partQuestion(120));
        QCOMPARE(readText(file), text);
    }

    // ---- A file of the command line that does not exist.

    void aMissingFileIsNotMadeWhenTheAnswerIsNo() {
        Session s;
        const QString file = s.path(QStringLiteral("typo.cp"));
        s.prompts.answers = {Answer::No};
        start(s, file);
        QCOMPARE(s.prompts.boxes, QStringList{QStringLiteral("Question|The file does not exist:\n") + file +
                                              QStringLiteral("\n\nDo you want to create it?")});
        QVERIFY(!QFile::exists(file));
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.window->problems().Current()->description,
                 std::wstring(L"Click here to change problem description"));
        QVERIFY(s.window->problems().filePath.empty());
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane"));
        QCOMPARE(
            s.window->statusText(),
            QStringLiteral("The file was not created: the problem stays in memory until it is saved (File, "
                           "Save as)."));
        // A save names its file first; given up, nothing is written.
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QVERIFY(!QFile::exists(file));
        QCOMPARE(QDir(s.dir.path()).entryList({QStringLiteral("*.cp")}, QDir::Files), QStringList());
    }

    void aMissingFileIsMadeWhenTheAnswerIsYes() {
        Session s;
        const QString file = s.path(QStringLiteral("fresh.cp"));
        s.prompts.answers = {Answer::Yes};
        start(s, file);
        QCOMPARE(s.prompts.boxes.size(), 1);
        QVERIFY(QFile::exists(file));
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - ") + file);
        QCOMPARE(s.window->statusText(), QStringLiteral("Number of chess problems in this file: 1"));
    }

    void theDefaultFileOfTheDataFolderIsMadeWithoutAQuestion() {
        Session s;
        start(s, QString());
        QCOMPARE(s.prompts.boxes, QStringList());
        QVERIFY(QFile::exists(s.path(QStringLiteral("myChessProblems.cp"))));
    }

    // ---- The real box: its default button keeps the file.

    void theRealQuestionTakesNoOnEnter() {
        DialogPrompts prompts;
        bool seen = false;
        QString defaultButton;
        QTimer timer;
        timer.setInterval(10);
        connect(&timer, &QTimer::timeout, &timer, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) return;
            timer.stop();
            seen = true;
            if (box->defaultButton()) defaultButton = box->defaultButton()->text().remove(QLatin1Char('&'));
            QTest::keyClick(box, Qt::Key_Return);
        });
        timer.start();
        const Answer answer = prompts.ask(QStringLiteral("Question"), QStringLiteral("Write over?"),
                                          Buttons::YesNoDefaultNo, PromptIcon::Question);
        QVERIFY(seen);
        QCOMPARE(answer, Answer::No);
        QCOMPARE(defaultButton, QStringLiteral("No"));
    }
};

QTEST_MAIN(FileSafetyTest)
#include "file_safety_test.moc"
