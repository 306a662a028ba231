#pragma once
// Crash tests for the file writers: a child process saves in a loop and is killed with
// SIGKILL at a random moment, over and over; after each kill the parent checks the file.
//
// The child is this test program started again, with a filter that selects the running
// test and KX_KILLED_WRITER naming the writer (as GoogleTest's "threadsafe" death tests
// do), so nothing is forked from a process that runs Qt's threads. A child dies with its
// parent and stops on its own after half a minute.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>

namespace kx::test {

struct TKilledWriter {
    QString name;  // unique within the test program
    // In the child: saves into dir over and over, calling saved() after each complete
    // save; never returns.
    std::function<void(const QString& dir, const std::function<void()>& saved)> run;
    // In the parent after each kill: empty when the file in dir is intact and readable,
    // otherwise what is wrong with it.
    std::function<QString(const QString& dir)> check;
};

struct TKillReport {
    int kills = 0;
    QStringList faults;  // "kill <n>: <what is wrong>"
};

// In the child started for this writer: runs it (and never returns). In the parent: starts
// children until at least ten were killed and the budget is spent (or one fails), kills each with
// SIGKILL a random 0..maxDelay after its first complete save, and checks the file after each kill.
// In a child started for another writer: nothing.
TKillReport KillWhileSaving(const TKilledWriter& writer, const QString& dir,
                            std::chrono::milliseconds budget,
                            std::chrono::microseconds maxDelay = std::chrono::milliseconds(25));

// A writer that replaces fileName in the folder: the child alternates save(path, 0) and
// save(path, 1). After each kill the file must be byte for byte what one of them writes
// (the parent saves both once into reference folders), and load, reading it through the
// library, must give what it gives for that reference (empty means unreadable).
using TSaveVariant = std::function<void(const QString& path, int variant)>;
using TLoadFile = std::function<QByteArray(const QString& path)>;
TKilledWriter ReplacingWriter(const QString& name, const QString& fileName, TSaveVariant save,
                              TLoadFile load);

QByteArray ReadFileBytes(const QString& path);

}  // namespace kx::test
