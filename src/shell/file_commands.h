#pragma once
// FileCommands: new, open, save, save as, append and remove problems of
// another file, tags from another file, and the check for outside changes
// of the open file.
#include "problems/chess_problem.h"
#include "shell/command_id.h"
#include "shell/file_watch.h"

#include <QObject>
#include <QString>

#include <exception>
#include <filesystem>

namespace zorvane {

class WindowServices;

class FileCommands : public QObject {
    Q_OBJECT
  public:
    FileCommands(WindowServices& window, QObject* parent = nullptr);

    // The File menu and TagsAppendFromFile; false for other commands.
    bool dispatch(CommandId id);

    // Replaces the list by the file's problems, after the questions of an open.
    bool openFile(const std::filesystem::path& path, bool createIfMissing = false);
    bool saveAs();
    // Looks at the open file: with another last-write time, warns or offers a reload.
    void checkExternalChange();
    FileWatch& watch() { return m_watch; }
    // True while a load runs: outside changes wait.
    bool loading() const { return m_loading; }

  private:
    void newFile();
    void save();
    void appendProblems();
    void removeProblems();
    void appendTags();
    // Looks every FEN code of a chosen text file up in the list; the missing ones go to a file beside it.
    void checkFenCodes();
    // Another .cp file read for append, remove or tags; false when none was chosen or it failed.
    bool readOtherFile(const QString& caption, ProblemMap& other);
    // The closing question of append and remove: Yes writes the file.
    bool askToSaveAll(const QString& resultText);
    // Writes the whole list to `path`, which becomes the list's file; over the
    // file loaded in part only after the list's question.
    bool writeAll(const std::filesystem::path& path);
    QString askFileToOpen(const QString& caption);
    QString errorText(const std::exception& error) const;

    WindowServices& m_window;
    FileWatch m_watch;
    bool m_loading = false;
};

} // namespace zorvane
