#pragma once
// One start of the window for a test: a data directory of its own, scripted
// prompts, and the first load waited for.
#include "scripted_prompts.h"
#include "shell/command_registry.h"
#include "shell/main_window.h"

#include <QAction>
#include <QFile>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <memory>

namespace zorvane {

// One start of the program in a data directory of its own.
struct Session {
    QTemporaryDir dir;
    ScriptedPrompts prompts;
    std::unique_ptr<MainWindow> window;

    QString path(const QString& name) const { return dir.filePath(name); }
    QString sample() const { return path(QStringLiteral("sample_problems.cp")); }
    void copySample() const {
        QFile::copy(QStringLiteral(ZORVANE_SOURCE_DIR "/tests/data/rook_mates.cp"), sample());
        QFile(sample()).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    int current() const { return window->problems().Current()->id; }
    bool enabled(CommandId id) const { return window->commands().isEnabled(id); }
    bool checked(CommandId id) const { return window->commands().action(id)->isChecked(); }
    QString text(CommandId id) const { return window->commands().action(id)->text(); }
    QString firstMenu() const { return window->menuBar()->actions().front()->text(); }
};

// Starts the window on `file` (empty: the default file) and waits for the first load.
inline void start(Session& session, const QString& file, const QString& lockDirectory = QString()) {
    StartupArguments arguments;
    arguments.dataDirectory = std::filesystem::path(session.dir.path().toStdString());
    arguments.problemFile = file;
    arguments.lockDirectory = lockDirectory.isEmpty() ? session.dir.path() : lockDirectory;
    session.window = std::make_unique<MainWindow>(arguments, session.prompts);
    session.window->show();
    session.window->startInitialisation();
    QTRY_VERIFY_WITH_TIMEOUT(session.window->isInitialised(), 120000);
}

inline void startOnSample(Session& session) {
    session.copySample();
    start(session, session.sample());
}

} // namespace zorvane
