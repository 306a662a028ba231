#include "kx/drawing/executefile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>
#include <cstdlib>

#include "qstring_print.h"

namespace kx {
namespace {

const QFileDevice::Permissions kDocument = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
const QFileDevice::Permissions kProgram = kDocument | QFileDevice::ExeOwner;

// What reached the system, one line per call: "open <url>" or
// "start <program> [<arg>, ...] in <dir>".
class ExecuteFile : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        SetExecuteLauncher(
            {[this](const QUrl& url) {
                 calls_ << "open " + url.toString(QUrl::FullyEncoded);
                 urls_ << url;
                 return openOk_;
             },
             [this](const QString& program, const QStringList& args, const QString& dir) {
                 calls_ << "start " + program + " [" + args.join(", ") + "] in " + dir;
                 programs_ << program;
                 args_ << args;
                 return startOk_;
             }});
    }
    // Never fall back to the real launcher, even for a test that failed half-way.
    void TearDown() override {
        SetExecuteLauncher(
            {[](const QUrl&) { return false; },
             [](const QString&, const QStringList&, const QString&) { return false; }});
    }

    // Creates dir/name (with any folders that name holds) and returns its full path.
    QString makeFile(const QString& name, QFileDevice::Permissions permissions) {
        const QString path = dir_.filePath(name);
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly)) << qPrintable(name);
        f.write("#!/bin/sh\n");
        f.close();
        EXPECT_TRUE(f.setPermissions(permissions));
        return path;
    }

    QTemporaryDir dir_;
    QStringList calls_;
    QList<QUrl> urls_;
    QStringList programs_;
    QList<QStringList> args_;
    bool openOk_ = true, startOk_ = true;
};

const QString kHostileNames[] = {
    "my report.txt",
    "it's \"quoted\".txt",
    "a;b&c|d>e",
    "$(touch /tmp/x)",
    "`id`",
    "two\nlines",
    "-rf",
    "--help",
    "*?[x]{y}",
    "%PATH% ~ \\ !",
    // Looks like a scheme only past its start.
    "my report.txt:v2",
};

TEST_F(ExecuteFile, HostileNamesReachTheSystemAsOneName) {
    for (const QString& name : kHostileNames) {
        for (bool program : {false, true}) {
            const QString path = makeFile(name, program ? kProgram : kDocument);
            // Relative against the directory, and absolute without one.
            for (bool relative : {true, false}) {
                calls_.clear(), urls_.clear(), programs_.clear(), args_.clear();
                const QString dir = relative ? dir_.path() : QString();
                EXPECT_EQ(KxExecuteFile(relative ? name : path, "", dir, 1), KX_EXECUTE_OK)
                    << qPrintable(name);
                ASSERT_EQ(calls_.size(), 1) << qPrintable(name);
                if (program) {
                    EXPECT_EQ(programs_, QStringList{path});
                    EXPECT_EQ(args_, QList<QStringList>{QStringList()});
                    EXPECT_TRUE(calls_[0].endsWith("] in " + dir)) << qPrintable(calls_[0]);
                } else {
                    ASSERT_EQ(urls_.size(), 1) << qPrintable(name);
                    EXPECT_TRUE(urls_[0].isLocalFile());
                    EXPECT_EQ(urls_[0].toLocalFile(), path);
                }
            }
            QFile::remove(path);
        }
    }
}

TEST_F(ExecuteFile, ParametersSplitWithoutAShell) {
    const QString tool = makeFile("tool", kProgram);
    struct Case {
        QString parameters;
        QStringList args;
    } cases[] = {
        {"", {}},
        {"   ", {}},
        {"-n 5", {"-n", "5"}},
        {"\"two words\" ; rm -rf ~", {"two words", ";", "rm", "-rf", "~"}},
        {"$(touch /tmp/x) `id` | cat", {"$(touch", "/tmp/x)", "`id`", "|", "cat"}},
        // Only double quotes group; three in a row make one literal quote.
        {"'single quoted' x", {"'single", "quoted'", "x"}},
        {"say \"\"\"hi\"\"\"", {"say", "\"hi\""}},
        {"a\tb\nc", {"a", "b", "c"}},
    };
    for (const Case& c : cases) {
        args_.clear();
        EXPECT_EQ(KxExecuteFile(tool, c.parameters, dir_.path(), 1), KX_EXECUTE_OK);
        EXPECT_EQ(args_, QList<QStringList>{c.args}) << qPrintable(c.parameters);
        EXPECT_EQ(c.args, QProcess::splitCommand(c.parameters)) << qPrintable(c.parameters);
    }
}

TEST_F(ExecuteFile, UrlsOpenAsTheyStand) {
    const QString urls[] = {
        "https://example.com/a;b c?q=$(rm -rf ~)",
        "mailto:ops@example.com?subject=`id`",
        "file:///tmp/no such file",
        "x-custom+app.v2:anything",
    };
    for (const QString& url : urls) {
        calls_.clear(), urls_.clear();
        // Parameters and directory play no part.
        EXPECT_EQ(KxExecuteFile(url, "--evil", "/nonexistent", 1), KX_EXECUTE_OK)
            << qPrintable(url);
        EXPECT_EQ(urls_, QList<QUrl>{QUrl(url)}) << qPrintable(url);
        EXPECT_EQ(calls_.size(), 1);
    }
}

TEST_F(ExecuteFile, ResultCodes) {
    const QString doc = makeFile("doc.txt", kDocument);
    const QString tool = makeFile("tool", kProgram);
    const QString other = dir_.filePath("other");
    ASSERT_TRUE(QDir().mkpath(other));
    struct Case {
        const char* what;
        QString file, directory;
        int show;
        bool openOk, startOk;
        int result;
        QString call;  // empty: nothing reaches the system
    } cases[] = {
        {"document", "doc.txt", dir_.path(), 1, true, true, KX_EXECUTE_OK,
         "open " + QUrl::fromLocalFile(doc).toString(QUrl::FullyEncoded)},
        {"program", "tool", dir_.path(), 0, true, true, KX_EXECUTE_OK,
         "start " + tool + " [] in " + dir_.path()},
        {"folder", "other", dir_.path(), 3, true, true, KX_EXECUTE_OK,
         "open " + QUrl::fromLocalFile(other).toString(QUrl::FullyEncoded)},
        {"empty name", "", dir_.path(), 1, true, true, SE_ERR_FNF, ""},
        {"missing file", "nothing.txt", dir_.path(), 1, true, true, SE_ERR_FNF, ""},
        {"missing absolute", dir_.filePath("nothing"), "", 1, true, true, SE_ERR_FNF, ""},
        {"not in that directory", "doc.txt", other, 1, true, true, SE_ERR_FNF, ""},
        {"directory missing", "doc.txt", dir_.filePath("gone"), 1, true, true, SE_ERR_FNF, ""},
        // A drive letter is no scheme: this is a relative path that does not exist.
        {"drive letter", "C:/doc.txt", dir_.path(), 1, true, true, SE_ERR_FNF, ""},
        {"unparsable url", "http://[::1", "", 1, true, true, SE_ERR_FNF, ""},
        {"program, working directory missing", tool, dir_.filePath("gone"), 1, true, true,
         SE_ERR_PNF, ""},
        {"program, working directory a file", tool, doc, 1, true, true, SE_ERR_PNF, ""},
        // A document needs no working directory.
        {"document, directory missing", doc, dir_.filePath("gone"), 1, true, true, KX_EXECUTE_OK,
         "open " + QUrl::fromLocalFile(doc).toString(QUrl::FullyEncoded)},
        {"document refused", "doc.txt", dir_.path(), 1, false, true, SE_ERR_NOASSOC,
         "open " + QUrl::fromLocalFile(doc).toString(QUrl::FullyEncoded)},
        {"program refused", "tool", dir_.path(), 1, true, false, SE_ERR_NOASSOC,
         "start " + tool + " [] in " + dir_.path()},
        {"url refused", "https://example.com", "", 1, false, true, SE_ERR_NOASSOC,
         "open https://example.com"},
    };
    for (const Case& c : cases) {
        calls_.clear();
        openOk_ = c.openOk, startOk_ = c.startOk;
        EXPECT_EQ(KxExecuteFile(c.file, "", c.directory, c.show), c.result) << c.what;
        EXPECT_EQ(calls_, c.call.isEmpty() ? QStringList() : QStringList{c.call}) << c.what;
    }
}

TEST_F(ExecuteFile, RelativeNameWithoutDirectoryUsesTheCurrentOne) {
    const QString doc = makeFile("here.txt", kDocument);
    const QString saved = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir_.path()));
    const int result = KxExecuteFile("here.txt", "", "", 1);
    QDir::setCurrent(saved);
    EXPECT_EQ(result, KX_EXECUTE_OK);
    EXPECT_EQ(calls_, QStringList{"open " + QUrl::fromLocalFile(doc).toString(QUrl::FullyEncoded)});
}

TEST_F(ExecuteFile, BareNamesAreLookedUpOnPath) {
    const QString bin = dir_.filePath("bin");
    ASSERT_TRUE(QDir().mkpath(bin));
    const QString tool = makeFile("bin/kxtool", kProgram);
    makeFile("bin/kxnotes", kDocument);
    makeFile("kxlocal", kProgram);
    makeFile("bin/kxlocal", kProgram);
    const QByteArray savedPath = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(bin));
    struct Case {
        QString file, directory;
        int result;
        QString program;
    } cases[] = {
        {"kxtool", "", KX_EXECUTE_OK, tool},
        {"kxtool", dir_.path(), KX_EXECUTE_OK, tool},
        // Found in the directory first, though PATH has one too.
        {"kxlocal", dir_.path(), KX_EXECUTE_OK, dir_.filePath("kxlocal")},
        // Only executables are found on PATH, and only for names without a folder.
        {"kxnotes", "", SE_ERR_FNF, ""},
        {"./kxtool", dir_.path(), SE_ERR_FNF, ""},
        {"missing", "", SE_ERR_FNF, ""},
    };
    for (const Case& c : cases) {
        programs_.clear();
        EXPECT_EQ(KxExecuteFile(c.file, "", c.directory, 1), c.result) << qPrintable(c.file);
        EXPECT_EQ(programs_, c.program.isEmpty() ? QStringList() : QStringList{c.program})
            << qPrintable(c.file);
    }
    qputenv("PATH", savedPath);
}

// Root may read anything, so when the tests run as root the denial is checked with the
// real and effective user switched to an ordinary one (the saved one stays root to come
// back).
class AsOrdinaryUser {
  public:
    AsOrdinaryUser() {
        if (::geteuid() == 0) switched_ = ::setresuid(65534, 65534, 0) == 0;
    }
    ~AsOrdinaryUser() {
        if (switched_ && ::setresuid(0, 0, 0) != 0) std::abort();
    }
    bool Ordinary() const { return ::geteuid() != 0; }

  private:
    bool switched_ = false;
};

TEST_F(ExecuteFile, UnreadableGivesAccessDenied) {
    const QFileDevice::Permissions everyone =
        QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    const QFileDevice::Permissions entry =
        everyone | QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther;
    ASSERT_TRUE(QFile::setPermissions(dir_.path(), entry | QFileDevice::WriteOwner));
    const QString readable = makeFile("readable.txt", everyone);
    makeFile("locked.txt", {});
    makeFile("runonly", QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther);
    const QString closed = dir_.filePath("closed");
    ASSERT_TRUE(QDir().mkpath(closed));
    ASSERT_TRUE(QFile::setPermissions(closed, {}));
    const struct {
        const char* file;
        int result;
    } cases[] = {
        {"readable.txt", KX_EXECUTE_OK},
        {"locked.txt", SE_ERR_ACCESSDENIED},
        {"runonly", SE_ERR_ACCESSDENIED},
        {"closed", SE_ERR_ACCESSDENIED},
    };
    int results[std::size(cases)] = {};
    {
        AsOrdinaryUser user;
        if (!user.Ordinary()) GTEST_SKIP() << "cannot leave the root user here";
        for (size_t i = 0; i < std::size(cases); ++i)
            results[i] = KxExecuteFile(cases[i].file, "", dir_.path(), 1);
    }
    QFile::setPermissions(closed, entry);
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(results[i], cases[i].result) << cases[i].file;
    EXPECT_EQ(calls_,
              QStringList{"open " + QUrl::fromLocalFile(readable).toString(QUrl::FullyEncoded)});
}

}  // namespace
}  // namespace kx
