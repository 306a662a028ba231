// The canvas against the classic raster engine: each reference case is a drawing script
// with the exact pixels the classic engine produced. Read from the shared reference data
// next to the project (never copied into it).
#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>

#include "kx/drawing/canvasscript.h"

namespace kx {
namespace {

struct RasterCase {
    QString name;
    QString script;
    QStringList rows;  // '.' white, '#' pen (black), '+' brush (red)
};

std::vector<RasterCase> readCases(const QString& path) {
    std::vector<RasterCase> cases;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return cases;
    bool inPicture = false;
    for (const QString& line : QString::fromUtf8(f.readAll()).split('\n')) {
        if (line.startsWith(QLatin1String("== "))) {
            cases.push_back(RasterCase{line.mid(3), {}, {}});
            inPicture = false;
        } else if (cases.empty()) {
            continue;
        } else if (line.trimmed() == QLatin1String("expect")) {
            inPicture = true;
        } else if (inPicture) {
            if (!line.trimmed().isEmpty()) cases.back().rows << line.trimmed();
        } else {
            cases.back().script += line + '\n';
        }
    }
    return cases;
}

char symbolOf(TColor c) {
    return c == clWhite ? '.' : c == clBlack ? '#' : c == clRed ? '+' : '?';
}

// The picture as the reference writes it, with every differing pixel shown as
// "expected/actual" in the mismatch report.
QString compare(const TBitmap& b, const QStringList& rows, int& mismatches) {
    QString report;
    mismatches = 0;
    for (int y = 0; y < rows.size(); ++y) {
        QString got;
        for (int x = 0; x < rows[y].size(); ++x)
            got += symbolOf(b.Pixel(x, y));
        if (got != rows[y]) {
            for (int x = 0; x < got.size(); ++x)
                mismatches += got[x] != rows[y][x];
            report +=
                QStringLiteral("row %1: want %2\n        got  %3\n").arg(y, 2).arg(rows[y], got);
        }
    }
    return report;
}

TEST(ClassicRaster, EveryReferenceCaseMatchesPixelForPixel) {
    const QString dir = qEnvironmentVariableIsSet("KX_REFERENCE_DIR")
                            ? qEnvironmentVariable("KX_REFERENCE_DIR")
                            : QStringLiteral(KX_REFERENCE_DIR);
    const QString path = dir + QStringLiteral("/classic-raster.txt");
    const std::vector<RasterCase> cases = readCases(path);
    if (cases.empty()) GTEST_SKIP() << "reference data not found at " << path.toStdString();
    EXPECT_GE(cases.size(), 67u);
    for (const RasterCase& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        std::unique_ptr<TBitmap> bitmap;
        const TScriptResult r = RunCanvasScript(c.script, bitmap);
        ASSERT_TRUE(r.Ok) << r.Line << ": " << r.Message.toStdString();
        ASSERT_EQ(bitmap->Height(), c.rows.size());
        int mismatches = 0;
        const QString report = compare(*bitmap, c.rows, mismatches);
        EXPECT_EQ(mismatches, 0) << c.script.toStdString() << report.toStdString();
    }
}

}  // namespace
}  // namespace kx
