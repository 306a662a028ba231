// The example panel run for real: loaded through the catalogue, fed by the simulator,
// rendered headless to PNG and PDF; and the runner's failures.
#include <gtest/gtest.h>

#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include "binder.h"
#include "panelrunner.h"
#include "render.h"

namespace kx::panel {
namespace {

const QString kPanel = QStringLiteral(KX_PANEL_EXAMPLES "/boiler-house.ui");
const QString kSim = QStringLiteral(KX_PANEL_EXAMPLES "/boiler-house.sim.json");

void runFor(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

class ExamplePanel : public ::testing::Test {
  protected:
    void SetUp() override {
        QString error;
        ASSERT_TRUE(runner_.Load(kPanel, kSim, &error)) << error.toStdString();
        ASSERT_TRUE(runner_.Messages().isEmpty()) << runner_.Messages().join('\n').toStdString();
        runner_.Panel()->setAttribute(Qt::WA_DontShowOnScreen);
        runner_.Panel()->show();
        runner_.Start();
        runFor(300);
    }
    PanelRunner runner_;
    QTemporaryDir dir_;
};

TEST_F(ExamplePanel, InstrumentsStandWhereThePanelPutsThem) {
    const struct {
        const char* name;
        QRect rect;
    } places[] = {
        {"Boiler", {8, 8, 190, 190}},   {"Steam", {206, 8, 190, 190}},
        {"Feed", {404, 8, 220, 118}},   {"Level", {632, 8, 76, 190}},
        {"Trend1", {8, 206, 388, 256}}, {"Setpoint", {404, 206, 180, 180}},
        {"Lamp0", {600, 216, 192, 28}}, {"Lamp5", {600, 416, 192, 28}},
    };
    QWidget* panel = runner_.Panel();
    EXPECT_EQ(panel->size(), QSize(800, 470));
    for (const auto& p : places) {
        QWidget* w = panel->findChild<QWidget*>(p.name);
        ASSERT_TRUE(w) << p.name;
        EXPECT_TRUE(w->inherits("kx::TKxControl") || w->inherits("kx::TKxGraphicControl") ||
                    QByteArray(w->metaObject()->className()).startsWith("kx::"))
            << p.name;
        EXPECT_EQ(w->geometry(), p.rect) << p.name;
        EXPECT_TRUE(panel->rect().contains(w->geometry())) << p.name;
    }
    EXPECT_EQ(runner_.Bindings()->BoundCount(), 17);
    EXPECT_GT(runner_.Bindings()->Applied(), 17);
}

TEST_F(ExamplePanel, PngShowsTheInstruments) {
    const QString png = dir_.filePath("panel.png");
    QString error;
    ASSERT_TRUE(RenderPanel(*runner_.Panel(), png, &error)) << error.toStdString();
    QImage image(png);
    ASSERT_EQ(image.size(), QSize(800, 470));
    const QRgb background = image.pixel(797, 467);
    // A good part of each instrument's rectangle is drawn, not the window behind it (the
    // bars leave the window showing beside their scales).
    const struct {
        QRect r;
        int share;  // at least 1 / share of the pixels
    } instruments[] = {{{8, 8, 190, 190}, 2},    {{206, 8, 190, 190}, 2}, {{404, 8, 220, 118}, 2},
                       {{632, 8, 76, 190}, 6},   {{716, 8, 76, 190}, 6},  {{8, 206, 388, 256}, 2},
                       {{404, 206, 180, 180}, 2}};
    for (const auto& [r, share] : instruments) {
        int drawn = 0;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x)
                drawn += image.pixel(x, y) != background;
        EXPECT_GT(drawn, r.width() * r.height() / share) << r.x() << "," << r.y();
    }
    // The trend's curve area is black, and a lamp of the status word is lit green.
    EXPECT_EQ(image.pixel(200, 300), qRgb(0, 0, 0));
    int green = 0;
    for (int i = 0; i < 6; ++i) {
        const QColor c = image.pixelColor(606, 230 + i * 40);
        green += c.green() > 150 && c.red() < 100;
    }
    EXPECT_GT(green, 0);
    EXPECT_LT(green, 6);
}

TEST_F(ExamplePanel, PdfHasOnePageWithThePanel) {
    const QString pdf = dir_.filePath("panel.pdf");
    QString error;
    ASSERT_TRUE(RenderPanel(*runner_.Panel(), pdf, &error)) << error.toStdString();
    QFile file(pdf);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF-"));
    EXPECT_GT(bytes.size(), 20000);
    const QString text = QString::fromLatin1(bytes);
    EXPECT_EQ(text.count(QRegularExpression("/Type\\s*/Page[^s]")), 1);
    EXPECT_EQ(text.count(QRegularExpression("/Subtype\\s*/Image")), 1);
}

TEST_F(ExamplePanel, RenderFailuresAreReported) {
    QString error;
    EXPECT_FALSE(RenderPanel(*runner_.Panel(), dir_.filePath("panel.bmp"), &error));
    EXPECT_TRUE(error.endsWith("expected a .png or .pdf file name"));
    QFile blocker(dir_.filePath("file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    for (const char* name : {"file/panel.png", "file/panel.pdf"}) {
        error.clear();
        EXPECT_FALSE(RenderPanel(*runner_.Panel(), dir_.filePath(name), &error)) << name;
        EXPECT_TRUE(error.endsWith("cannot write")) << error.toStdString();
    }
}

TEST(PanelRunner, FailuresAndProblems) {
    QTemporaryDir dir;
    const auto write = [&](const char* name, const QByteArray& text) {
        QFile f(dir.filePath(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        return dir.filePath(name);
    };
    QString error;
    {
        PanelRunner r;
        EXPECT_FALSE(r.Load(dir.filePath("none.ui"), {}, &error));
        EXPECT_TRUE(error.contains("none.ui: cannot read")) << error.toStdString();
    }
    {
        PanelRunner r;
        EXPECT_FALSE(r.Load(write("bad.ui", "<ui><widget"), {}, &error));
        EXPECT_TRUE(error.contains("bad.ui: not a panel")) << error.toStdString();
    }
    {
        PanelRunner r;
        const QString bad = write("bad.json", R"({"sources": {}, "bindings": [{"target": 3}]})");
        EXPECT_FALSE(r.Load(kPanel, bad, &error));
        EXPECT_TRUE(error.contains("bad.json: bindings[0].target: expected a non-empty string"))
            << error.toStdString();
    }
    {
        PanelRunner r;
        const QString json = write("some.json", R"({
            "sources": { "sim": { "type": "simulator", "signals": { "a": { "wave": "sine" } } },
                         "plc": { "type": "modbus", "host": "127.0.0.1" } },
            "bindings": [ { "target": "Boiler.Value", "source": "sim", "address": "a" },
                          { "target": "Boiler2.Value", "source": "sim", "address": "a" },
                          { "target": "Lamp0.Checked", "source": "plc", "address": "coil:1" } ],
            "alarm_log": "/nonexistent/dir/a.csv", "colour": 1 })");
        ASSERT_TRUE(r.Load(kPanel, json, &error)) << error.toStdString();
#ifdef KX_PANEL_MODBUS
        const QStringList expected = {
            json + ": colour: unknown key, ignored",
            json + ": alarm_log: /nonexistent/dir/a.csv: cannot write: No such file or directory",
            json + ": bindings[1].target: no widget \"Boiler2\" in the panel",
        };
        const int bound = 2;
#else
        const QStringList expected = {
            json + ": colour: unknown key, ignored",
            json + ": sources.plc: type \"modbus\" is not available in this build",
            json + ": alarm_log: /nonexistent/dir/a.csv: cannot write: No such file or directory",
            json + ": bindings[1].target: no widget \"Boiler2\" in the panel",
            json + ": bindings[2].source: source \"plc\" is not running",
        };
        const int bound = 1;
#endif
        EXPECT_EQ(r.Messages(), expected);
        EXPECT_EQ(r.Bindings()->BoundCount(), bound);
    }
}

#if defined(KX_PANEL_MODBUS) && defined(KX_PANEL_MQTT)
// The field-bus and broker examples bind every target of the panel; nothing is started,
// so no server is needed.
TEST(ExampleBindings, EveryExampleBindsTheWholePanel) {
    for (const char* name : {"modbus", "mqtt"}) {
        PanelRunner r;
        QString error;
        const QString json = QStringLiteral(KX_PANEL_EXAMPLES "/boiler-house.%1.json").arg(name);
        ASSERT_TRUE(r.Load(kPanel, json, &error)) << name << ": " << error.toStdString();
        EXPECT_TRUE(r.Messages().isEmpty())
            << name << ": " << r.Messages().join('\n').toStdString();
        EXPECT_EQ(r.Bindings()->BoundCount(), 17) << name;
    }
}
#endif

}  // namespace
}  // namespace kx::panel
