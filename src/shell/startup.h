#pragma once
// The start of the program before the window works: the instance lock, the
// priority, the data directory, the options, the thread defaults and the
// first line of the log; and the first load of the problem file.
#include "options/options.h"
#include "problems/problem_file.h"
#include "shell/process_control.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <memory>
#include <set>
#include <string>

class QLockFile;

namespace zorvane {

class Prompts;

const char* ProgramVersion();

struct StartupArguments {
    std::filesystem::path dataDirectory; // the current directory unless --data-dir is given
    QString problemFile;                 // the rest of the command line, taken whole; empty for none
    QString lockDirectory; // where the instance lock lies; the user's runtime directory by default
};

// "--data-dir DIR" and "--lock-dir DIR" are taken out; the other arguments, joined by blanks, name the file.
StartupArguments ParseArguments(const QStringList& arguments);

// The lock file that stands for the instance name "Local\ProblemySzachoweByBrannoch".
QString InstanceLockPath(const QString& lockDirectory);

struct ProgramStart {
    std::unique_ptr<QLockFile> instanceLock; // held for the life of the window
    bool isSecondInstance = false;
    std::filesystem::path dataDirectory;
    Options options;
    ThreadDefaults threads{1, 1};
    ProgramStart();
    ProgramStart(ProgramStart&&) noexcept;
    ~ProgramStart();
};

// Steps of the start in their order: the instance lock (and the box of a
// second instance), below-normal priority, the data directory, the options
// (and their warnings), the thread defaults, the log's "Program opened".
ProgramStart StartProgram(const StartupArguments& arguments, Prompts& prompts);

struct InitialProblems {
    ProblemMap problems;
    std::set<std::wstring> allTags;
    std::filesystem::path path; // empty when a missing file was not to be created
    // The reader's message. The problems read before the error stay; without
    // any, the list holds one empty problem.
    QString error;
    int problemsRead = 0;      // problems of the file in the list
    int problemsNotLoaded = 0; // problems of the file that the error left out
};

// The file of the command line, or myChessProblems.cp of the data directory.
// A missing file is created when `createIfMissing`; else nothing is written
// and the list holds the problem of a new file, with no path. Safe to run on
// a thread of its own.
InitialProblems LoadInitialProblems(const std::filesystem::path& path, const ProblemFileSettings& settings,
                                    bool createIfMissing = true);
// The file that a load of `path` reads: the ".cpx" double in the comment mode.
std::filesystem::path FileToRead(const std::filesystem::path& path, const ProblemFileSettings& settings);

} // namespace zorvane
