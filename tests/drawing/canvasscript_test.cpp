// The drawing script: parsing, drawing, error reports and robustness against garbage.
#include "kx/drawing/canvasscript.h"

#include <gtest/gtest.h>

#include "common/pixels.h"

#include <QSet>
#include <random>

namespace kx {
namespace {

struct ScriptRun {
    TScriptResult result;
    std::unique_ptr<TBitmap> bitmap;
};

ScriptRun run(const QString& script) {
    ScriptRun r;
    r.result = RunCanvasScript(script, r.bitmap);
    return r;
}

// Runs body on a fresh 60 x 40 bitmap; fails the test when the script does not run.
ScriptRun draw(const char* body) {
    ScriptRun r = run(QStringLiteral("size 60 40\n") + QString::fromUtf8(body));
    EXPECT_TRUE(r.result.Ok) << body << "\n-> line " << r.result.Line << ": "
                             << r.result.Message.toStdString();
    return r;
}

bool anyNonWhite(const TBitmap& b) {
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            if (b.Pixel(x, y) != clWhite) return true;
    return false;
}

// One sample per operation; draws tells whether it must change a white bitmap.
struct OpSample {
    const char* op;
    const char* body;
    bool draws;
};

const OpSample kOpSamples[] = {
    {"size", "", false},
    {"fill", "fill clRed", true},
    {"pen", "pen clRed 2 dash xor", false},
    {"brush", "brush clLime bdiagonal", false},
    {"font", "font \"Times New Roman\" 12 clBlue bold italic", false},
    {"moveto", "moveto 3 3", false},
    {"lineto", "lineto 30 20", true},
    {"pixel", "pixel 5 5 clRed", true},
    {"rectangle", "rectangle 2 2 20 15", true},
    {"fillrect", "brush clRed\nfillrect 2 2 20 15", true},
    {"roundrect", "roundrect 2 2 30 20 8 8", true},
    {"ellipse", "ellipse 2 2 30 20", true},
    {"arc", "arc 2 2 30 20 30 2 2 20", true},
    {"pie", "brush clRed\npie 2 2 30 20 30 2 2 20", true},
    {"polygon", "polygon 2 2 30 2 16 20", true},
    {"polyline", "polyline 2 2 30 2 16 20", true},
    {"frame3d", "frame3d 2 2 30 20 clRed clBlue 2", true},
    {"textout", "textout 2 2 Hello", true},
    {"KxDrawLED", "KxDrawLED 2 2 20 20 sRound clBlack clLime", true},
    {"KxBtnBevel", "KxBtnBevel 2 2 30 20 1 1 clRed", true},
    {"KxEllipse3D", "KxEllipse3D 2 2 30 30 clRed 1", true},
    {"KxCircleAtPoint", "KxCircleAtPoint 20 20 8 clBlack clRed", true},
    {"KxThumb", "KxThumb 20 20 30 0 clRed", true},
    {"KxDrawHPointer", "KxDrawHPointer 0 2 60 20 500 5 10", true},
    {"KxRoundSector", "KxRoundSector 2 2 30 30 0 90", true},
    {"KxCircleGradFill", "KxCircleGradFill 0 0 30 30 clYellow clRed", true},
    {"KxGradFill", "KxGradFill 0 0 60 40 clBlack clWhite gsDiamond1", true},
    {"KxArrowField", "KxArrowField 4 0 0 40 40", false},
    {"KxArrowDraw", "KxArrowField 4 0 0 40 40\nKxArrowDraw 45 1", true},
    {"KxTextOut", "KxTextOut 30 20 toMidCenter Hello", true},
    {"KxTextOut3D", "KxTextOut3D 30 20 clBtnFace clWhite clBlack toMidCenter 1 Hello", true},
    {"KxTextOutMultiLine", "KxTextOutMultiLine 2 2 1 toTopLeft a|b", true},
    {"KxTextOutMultiLine3D", "KxTextOutMultiLine3D 2 2 1 clRed clWhite clBlack toTopLeft 1 a|b",
     true},
    {"KxRotTextOut", "KxRotTextOut 30 20 90 toTopLeft Hello", true},
};

TEST(CanvasScript, EveryOperationHasASampleAndRuns) {
    QSet<QString> sampled;
    for (const OpSample& s : kOpSamples) {
        sampled.insert(QString::fromLatin1(s.op).toLower());
        ScriptRun r = draw(s.body);
        ASSERT_TRUE(r.bitmap) << s.op;
        EXPECT_EQ(r.bitmap->Width(), 60);
        EXPECT_EQ(r.bitmap->Height(), 40);
        EXPECT_EQ(anyNonWhite(*r.bitmap), s.draws) << s.op;
    }
    QSet<QString> names;
    for (const TScriptOperation& op : CanvasScriptOperations()) {
        EXPECT_TRUE(sampled.contains(op.Name.toLower()))
            << "no sample for " << op.Name.toStdString();
        EXPECT_FALSE(names.contains(op.Name.toLower())) << "duplicate " << op.Name.toStdString();
        EXPECT_FALSE(op.Usage.isEmpty()) << op.Name.toStdString();
        names.insert(op.Name.toLower());
    }
}

TEST(CanvasScript, DrawsTheExpectedPixels) {
    struct Probe {
        int x, y;
        TColor expected;  // resolved with ColorToRGB before comparing
    };
    const struct {
        const char* body;
        std::vector<Probe> probes;
    } cases[] = {
        {"fill 0x00336699", {{5, 5, 0x336699}}},
        {"fill 3368601", {{59, 39, 0x336699}}},
        {"fill 0xFF00000F", {{0, 0, clBtnFace}}},
        {"pixel 3 4 0x00112233", {{3, 4, 0x112233}}},
        // Rectangle: outline on L..R-1, T..B-1, brush inside.
        {"pen clBlack 1\nbrush clLime\nrectangle 2 3 10 8",
         {{2, 3, clBlack}, {9, 7, clBlack}, {10, 8, clWhite}, {5, 5, clLime}}},
        {"brush clRed\nfillrect 2 3 10 8", {{9, 7, clRed}, {10, 7, clWhite}}},
        // Frame3D: first colour left and top, second right and bottom and both
        // off-diagonal corners, ring by ring.
        {"frame3d 0 0 10 10 clRed clBlue 2",
         {{0, 0, clRed}, {9, 0, clBlue}, {0, 9, clBlue}, {1, 1, clRed}, {2, 2, clWhite}}},
        // The up-arrow lamp: tip at (5, 0), base on row 10, filled inside.
        {"KxDrawLED 0 0 11 11 sArrowUp clBlack clRed",
         {{5, 0, clBlack}, {5, 10, clBlack}, {5, 6, clRed}, {1, 1, clWhite}}},
        // A pointer field turned a quarter clockwise points right; DX DY place it.
        {"brush clBlack\nKxArrowField 4 0 0 60 60\nKxArrowDraw 90 1 0 0",
         {{55, 30, clBlack}, {30, 5, clWhite}}},
        {"brush clBlack\nKxArrowField 0 0 0 20 20\nKxArrowDraw 0 1 30 10",
         {{40, 15, clBlack}, {10, 5, clWhite}}},
        // Without DX DY the square sits at the field's own corner.
        {"brush clBlack\nKxArrowField 0 40 0 60 20\nKxArrowDraw 0 1", {{50, 4, clBlack}}},
        {"KxGradFill 0 0 20 10 clBlack clWhite gsVertical1", {{0, 5, clBlack}, {19, 5, clWhite}}},
        {"KxGradFill 0 0 20 10 clBlack clWhite 0", {{10, 0, clBlack}}},
        // A solid brush paints the text cell, whose top-left corner is the point given.
        {"brush clRed\ntextout 5 5 X", {{5, 5, clRed}, {4, 4, clWhite}}},
        // fill leaves the brush alone.
        {"brush clRed\nfill clBlue\nfillrect 0 0 2 2", {{1, 1, clRed}}},
    };
    for (const auto& c : cases) {
        ScriptRun r = draw(c.body);
        ASSERT_TRUE(r.bitmap) << c.body;
        for (const Probe& p : c.probes)
            EXPECT_EQ(r.bitmap->Pixel(p.x, p.y), ColorToRGB(p.expected))
                << c.body << " at (" << p.x << ", " << p.y << ")";
    }
}

TEST(CanvasScript, AnchoredTextStaysOnItsSideOfTheAnchor) {
    struct Case {
        const char* body;
        bool left, above;  // ink left of x = 30 / above y = 20
    };
    const Case cases[] = {
        {"KxTextOut 30 20 toTopLeft Wg", false, false},
        {"KxTextOut 30 20 toBotRight Wg", true, true},
    };
    for (const Case& c : cases) {
        ScriptRun r = draw(c.body);
        ASSERT_TRUE(r.bitmap);
        const TRect ink = test::InkBounds(*r.bitmap);
        ASSERT_LT(ink.Left, ink.Right) << c.body;
        if (c.left)
            EXPECT_LE(ink.Right, 30) << c.body;
        else
            EXPECT_GE(ink.Left, 30) << c.body;
        if (c.above)
            EXPECT_LE(ink.Bottom, 20) << c.body;
        else
            EXPECT_GE(ink.Top, 20) << c.body;
    }
}

// Every script of a group must give the same picture as the first.
TEST(CanvasScript, EquivalentSpellingsDrawTheSame) {
    const std::vector<std::vector<const char*>> groups = {
        {"fill clRed", "fill 0x0000FF", "fill 255", "FILL $ff", "fill \"clred\"", "fill +0xff"},
        {"KxDrawLED 2 2 30 25 sArrowUp 0 clRed", "kxdrawled 2 2 30 25 3 0 clRed",
         "KXDRAWLED 2 2 30 25 arrowup 0x000000 0xFF"},
        {"KxTextOut 30 20 toMidCenter Hi there", "KxTextOut 30 20 4 \"Hi there\"",
         "KxTextOut 30 20 midcenter    Hi there   "},
        {"pen clRed 1\nmoveto 0 0\nlineto 30 20",
         "pen clRed 1 solid copy\nmoveto 0 0\nlineto 30 20",
         "pen clRed 1 pmCopy psSolid\nmoveto 0 0\nlineto 30 20"},
        {"KxGradFill 0 0 60 40 clBlack clWhite gsElliptic1",
         "KxGradFill 0 0 60 40 clBlack clWhite 6", "KxGradFill 0 0 60 40 0 0xFFFFFF elliptic1"},
        {"KxBtnBevel 2 2 30 20 1 1 clRed", "KxBtnBevel 2 2 30 20 true TRUE clRed"},
        {"KxArrowField 4 10 0 40 30\nKxArrowDraw 30 1",
         "KxArrowField 4 10 0 40 30\nKxArrowDraw 30 1 10 0"},
        {"rectangle 1 1 5 5", "# a comment\n\n   rectangle 1 1 5 5   \n  # another",
         "rectangle +1 1 0x5 $5", "\r\nrectangle 1 1 5 5\r\n"},
        {"brush clRed\nrectangle 1 1 9 9", "brush clBlue clear\nbrush clRed\nrectangle 1 1 9 9"},
    };
    for (const auto& group : groups) {
        ScriptRun first = draw(group[0]);
        ASSERT_TRUE(first.bitmap);
        for (size_t i = 1; i < group.size(); ++i) {
            ScriptRun other = draw(group[i]);
            ASSERT_TRUE(other.bitmap) << group[i];
            EXPECT_TRUE(other.bitmap->Image() == first.bitmap->Image())
                << group[i] << "\n  differs from\n"
                << group[0];
        }
    }
}

TEST(CanvasScript, StateOperationsSetTheCanvas) {
    ScriptRun r = draw(
        "pen 0x123456 3 clear xor\n"
        "brush clRed clear\n"
        "font \"Odd \\\"Name\\\" Sans\" 12 clBlue bold underline\n"
        "fill clBlue\n"
        "moveto 7 9");
    ASSERT_TRUE(r.bitmap);
    TCanvas& c = r.bitmap->Canvas();
    EXPECT_EQ(c.Pen().Color(), 0x123456);
    EXPECT_EQ(c.Pen().Width(), 3);
    EXPECT_EQ(c.Pen().Style(), psClear);
    EXPECT_EQ(c.Pen().Mode(), pmXor);
    EXPECT_EQ(c.Brush().Color(), clRed);
    EXPECT_EQ(c.Brush().Style(), bsClear);
    EXPECT_EQ(c.Font().Name(), QStringLiteral("Odd \"Name\" Sans"));
    EXPECT_EQ(c.Font().Size(), 12);
    EXPECT_EQ(c.Font().Color(), clBlue);
    EXPECT_EQ(c.Font().Style(), fsBold | fsUnderline);
    EXPECT_EQ(c.PenPos(), (TPoint{7, 9}));
}

struct ErrorCase {
    const char* script;
    int line;
    const char* message;  // a part of the expected message
};

TEST(CanvasScript, MalformedLinesReportTheirLine) {
    const ErrorCase cases[] = {
        {"", 0, "no size"},
        {"rectangle 0 0 1 1", 1, "before size"},
        {"\n# c\npen 0 1\nsize 5 5", 3, "before size"},
        {"size 10 10\nfoo 1 2", 2, "unknown operation 'foo'"},
        {"size 10 10\n\n# c\nrectangle 1 2 3", 4, "rectangle expects 4 arguments (L T R B), got 3"},
        {"size 0 10", 1, "out of range 1..8192"},
        {"size 10", 1, "size expects 2 arguments"},
        {"size 10 10\nsize 5 5", 2, "size given twice"},
        {"size 10 10\npen red 1", 2, "argument 1 (COLOR) of pen: 'red' is not a colour"},
        {"size 10 10\npen 0 1001", 2, "argument 2 (WIDTH) of pen"},
        {"size 10 10\npen 0 1 dotted", 2, "'dotted' is neither a pen style nor a pen mode"},
        {"size 10 10\nbrush 0 striped", 2, "argument 2 (STYLE) of brush"},
        {"size 10 10\nfont Arial 0 0", 2, "argument 2 (SIZE) of font"},
        {"size 10 10\nfont Arial 8 0 heavy", 2, "'heavy' is not bold"},
        {"size 10 10\nfont \"Arial 8 0", 2, "unterminated quote"},
        {"size 10 10\nellipse 1 2 x 4", 2, "argument 3 (R) of ellipse: 'x' is not an integer"},
        {"size 10 10\nmoveto 40000 0", 2, "out of range -32768..32767"},
        {"size 10 10\nfill 0x1FFFFFFFF", 2, "is not a colour"},
        {"size 10 10\npolygon 1 2 3 4 5", 2, "polygon expects X Y pairs, got 5 numbers"},
        {"size 10 10\npolygon 1 2", 2, "polygon expects at least 4 arguments"},
        {"size 10 10\ntextout 1 1", 2, "textout expects a text after its 2 arguments"},
        {"size 10 10\nKxTextOut 1 1 toMiddle text", 2, "argument 3 (POS) of KxTextOut"},
        {"size 10 10\nKxDrawLED 0 0 5 5 sTriangle 0 0", 2, "is not one of sRound..sDiamondRight"},
        {"size 10 10\nKxGradFill 0 0 5 5 0 255 14", 2, "argument 7 (STYLE)"},
        {"size 10 10\nKxBtnBevel 0 0 5 5 2 0 0", 2,
         "argument 5 (RAISED) of KxBtnBevel: '2' is not 0 or 1"},
        {"size 10 10\nKxRoundSector 0 0 5 5 nan 1", 2, "is not a number"},
        {"size 10 10\nKxArrowDraw 10 1", 2, "KxArrowDraw without a KxArrowField"},
        {"size 10 10\nKxArrowField 0 0 0 10 10\nKxArrowDraw 0 1 5", 3, "DX needs a DY"},
        {"size 10 10\nKxGradFill 0 0 3000 10 0 255 0", 2, "larger than 2048 pixels a side"},
        {"size 10 10\r\nfill 0\r\nbogus\r\n", 3, "unknown operation 'bogus'"},
    };
    for (const ErrorCase& c : cases) {
        ScriptRun r = run(QString::fromUtf8(c.script));
        EXPECT_FALSE(r.result.Ok) << c.script;
        EXPECT_EQ(r.result.Line, c.line) << c.script;
        EXPECT_TRUE(r.result.Message.contains(QString::fromUtf8(c.message)))
            << c.script << "\n  message: " << r.result.Message.toStdString()
            << "\n  expected: " << c.message;
    }
}

TEST(CanvasScript, AFailedRunKeepsThePictureDrawnSoFar) {
    ScriptRun r = run(QStringLiteral("size 8 6\nfill clRed\nfill nonsense\nfill clBlue"));
    EXPECT_FALSE(r.result.Ok);
    EXPECT_EQ(r.result.Line, 3);
    ASSERT_TRUE(r.bitmap);
    EXPECT_EQ(r.bitmap->Pixel(4, 3), clRed);

    ScriptRun before = run(QStringLiteral("fill clRed\nsize 8 6"));
    EXPECT_FALSE(before.result.Ok);
    EXPECT_FALSE(before.bitmap);

    // A new run replaces the previous bitmap, even when it fails.
    std::unique_ptr<TBitmap> out;
    ASSERT_TRUE(RunCanvasScript(QStringLiteral("size 8 6"), out).Ok);
    EXPECT_FALSE(RunCanvasScript(QStringLiteral("bogus"), out).Ok);
    EXPECT_FALSE(out);
}

// Random garbage, half of it shaped like real operations, must only ever produce
// orderly results. KX_FUZZ_SCRIPTS and KX_FUZZ_SEED run a longer or different round.
TEST(CanvasScript, GarbageNeverCrashes) {
    bool given = false;
    const int seed = qEnvironmentVariableIntValue("KX_FUZZ_SEED", &given);
    std::mt19937 rng(given ? uint32_t(seed) : 20240611u);
    const int scripts = std::max(qEnvironmentVariableIntValue("KX_FUZZ_SCRIPTS"), 1500);
    QStringList ops;
    for (const TScriptOperation& op : CanvasScriptOperations())
        ops << op.Name;
    // Separated by '~' as some words hold blanks.
    const QStringList words =
        QStringLiteral(
            "0~1~-1~7~40~0x7F~$FF~clRed~clBtnFace~sRound~gsDiamond1~toMidCenter~true~"
            "nan~inf~1e40~99999~-32768~32767~2147483648~\"quoted word\"~\"open~#~|~"
            "a|b|~0x~$~-~+~1.5~\\\"~size~\u00c4\u20ac~xor~clear~1000~\"\"~12~-40~"
            "0xFF00000F~25~3")
            .split(u'~');
    auto pick = [&](const QStringList& list) {
        return list[std::uniform_int_distribution<qsizetype>(0, list.size() - 1)(rng)];
    };
    auto chance = [&](int percent) {
        return std::uniform_int_distribution<int>(0, 99)(rng) < percent;
    };
    for (int s = 0; s < scripts; ++s) {
        QStringList lines;
        if (chance(70))
            lines << QStringLiteral("size %1 %2").arg(1 + int(rng() % 64)).arg(1 + int(rng() % 48));
        const int count = 1 + int(rng() % 12);
        for (int l = 0; l < count; ++l) {
            QString line;
            if (chance(25)) {
                const int len = int(rng() % 40);
                for (int k = 0; k < len; ++k)
                    line += QChar(char16_t(1 + rng() % 0x2FF));
            } else {
                line = pick(ops);
                if (chance(20)) line = line.toUpper();
                const int n = int(rng() % 11);
                for (int k = 0; k < n; ++k)
                    line += (chance(10) ? QStringLiteral("\t") : QStringLiteral(" ")) + pick(words);
            }
            lines << line;
        }
        const QString script =
            lines.join(chance(10) ? QStringLiteral("\r\n") : QStringLiteral("\n"));
        ScriptRun r = run(script);
        if (r.result.Ok) {
            EXPECT_TRUE(r.bitmap) << script.toStdString();
            EXPECT_EQ(r.result.Line, 0);
        } else {
            EXPECT_FALSE(r.result.Message.isEmpty()) << script.toStdString();
            EXPECT_GE(r.result.Line, 0);
            EXPECT_LE(r.result.Line, script.count(u'\n') + 1) << script.toStdString();
        }
    }
}

// Well-formed operations with their numbers replaced by the extremes of the accepted
// ranges reach the drawing routines and must draw (or refuse) without harm.
TEST(CanvasScript, ExtremeArgumentsNeverCrash) {
    std::mt19937 rng(7);
    const QStringList extremes = {"-32768", "-1", "0", "1", "59", "32767"};
    for (const OpSample& s : kOpSamples) {
        QStringList lines = QString::fromLatin1(s.body).split(u'\n');
        if (lines.last().isEmpty()) continue;
        for (int trial = 0; trial < 40; ++trial) {
            QStringList words = lines.last().split(u' ');
            for (qsizetype i = 1; i < words.size(); ++i) {
                bool isNumber = false;
                words[i].toInt(&isNumber);
                if (isNumber) words[i] = extremes[qsizetype(rng() % extremes.size())];
            }
            QStringList script = lines;
            script.last() = words.join(u' ');
            script.prepend(QStringLiteral("size 60 40"));
            ScriptRun r = run(script.join(u'\n'));
            if (!r.result.Ok) {
                EXPECT_EQ(r.result.Line, script.size()) << script.join(u'\n').toStdString();
                EXPECT_FALSE(r.result.Message.isEmpty());
            }
        }
    }
}

}  // namespace
}  // namespace kx
