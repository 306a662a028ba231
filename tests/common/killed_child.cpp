#include "common/killed_child.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <random>

namespace kx::test {
namespace {

constexpr char kWriterVar[] = "KX_KILLED_WRITER";
constexpr char kDirVar[] = "KX_KILLED_DIR";
constexpr char kParentVar[] = "KX_KILLED_PARENT";
constexpr char kSavedMark[] = "\nKX-SAVED\n";
constexpr int kChildLifeMs = 30000;
constexpr int kFirstSaveMs = 15000;
// A floor on the count, not on the rate: a loaded machine, or Qt's back-off on a lock file a
// killed child left, can make one round take seconds.
constexpr int kMinKills = 10;

[[noreturn]] void RunChild(const TKilledWriter& writer) {
    // An orphan must not go on writing into a folder its parent is removing.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (QByteArray::number(::getppid()) != qgetenv(kParentVar)) ::_exit(3);
    QElapsedTimer life;
    life.start();
    bool first = true;
    writer.run(qEnvironmentVariable(kDirVar), [&] {
        if (first) {
            first = false;
            [[maybe_unused]] const ssize_t n = ::write(1, kSavedMark, sizeof kSavedMark - 1);
        }
        if (life.elapsed() > kChildLifeMs) ::_exit(2);
    });
    ::_exit(0);
}

QString CurrentTestFilter() {
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    return QStringLiteral("--gtest_filter=%1.%2")
        .arg(QString::fromUtf8(info->test_suite_name()), QString::fromUtf8(info->name()));
}

// Waits for the child's first complete save; false when it ends or hangs before.
bool WaitForFirstSave(QProcess& child, QByteArray& output) {
    QElapsedTimer waited;
    waited.start();
    while (!output.contains(kSavedMark)) {
        if (child.state() != QProcess::Running || waited.elapsed() > kFirstSaveMs) return false;
        child.waitForReadyRead(50);
        output += child.readAll();
    }
    return true;
}

}  // namespace

QByteArray ReadFileBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TKillReport KillWhileSaving(const TKilledWriter& writer, const QString& dir,
                            std::chrono::milliseconds budget, std::chrono::microseconds maxDelay) {
    TKillReport report;
    if (qEnvironmentVariableIsSet(kWriterVar)) {
        if (qEnvironmentVariable(kWriterVar) == writer.name) RunChild(writer);
        return report;
    }
    const unsigned seed = std::random_device{}();
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int64_t> delay(0, maxDelay.count());
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(kWriterVar, writer.name);
    env.insert(kDirVar, dir);
    env.insert(kParentVar, QString::number(::getpid()));
    // Temporary folders the child's test makes before it runs the writer go into dir, which
    // the parent removes; a killed child could not remove them itself.
    env.insert(QStringLiteral("TMPDIR"), dir);
    QElapsedTimer spent;
    spent.start();
    while (report.kills < kMinKills || spent.elapsed() < budget.count()) {
        QProcess child;
        child.setProcessEnvironment(env);
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(), {CurrentTestFilter()});
        QByteArray output;
        if (!child.waitForStarted(5000) || !WaitForFirstSave(child, output)) {
            report.faults << QStringLiteral("child %1 made no save: %2")
                                 .arg(report.kills + 1)
                                 .arg(QString::fromLocal8Bit(output.right(600)));
            break;  // ~QProcess kills and reaps it
        }
        QThread::usleep(static_cast<unsigned long>(delay(rng)));
        child.kill();
        child.waitForFinished(5000);
        ++report.kills;
        if (child.exitStatus() != QProcess::CrashExit)
            report.faults << QStringLiteral("kill %1: the child ended by itself").arg(report.kills);
        if (const QString fault = writer.check(dir); !fault.isEmpty())
            report.faults
                << QStringLiteral("kill %1 (seed %2): %3").arg(report.kills).arg(seed).arg(fault);
    }
    return report;
}

TKilledWriter ReplacingWriter(const QString& name, const QString& fileName, TSaveVariant save,
                              TLoadFile load) {
    TKilledWriter w;
    w.name = name;
    w.run = [=](const QString& dir, const std::function<void()>& saved) {
        for (int i = 0;; ++i) {
            save(QDir(dir).filePath(fileName), i % 2);
            saved();
        }
    };
    // The two complete files, saved by the parent into reference folders on its first check.
    auto refs = std::make_shared<QStringList>();
    w.check = [=](const QString& dir) -> QString {
        if (refs->isEmpty()) {
            for (int v = 0; v < 2; ++v) {
                const QString sub = QDir(dir).filePath(QStringLiteral("reference%1").arg(v));
                QDir().mkpath(sub);
                refs->append(QDir(sub).filePath(fileName));
                save(refs->back(), v);
            }
            if (ReadFileBytes(refs->front()) == ReadFileBytes(refs->back()))
                return QStringLiteral("the two variants save the same file");
        }
        const QString path = QDir(dir).filePath(fileName);
        const QByteArray bytes = ReadFileBytes(path);
        for (const QString& ref : std::as_const(*refs)) {
            if (bytes != ReadFileBytes(ref)) continue;
            const QByteArray loaded = load(path);
            return loaded.isEmpty() || loaded != load(ref)
                       ? QStringLiteral("a complete file does not load as saved")
                       : QString();
        }
        return QStringLiteral("the file (%1 bytes) is neither complete save").arg(bytes.size());
    };
    return w;
}

}  // namespace kx::test
