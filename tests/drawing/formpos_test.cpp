#include "kx/drawing/formpos.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <QDialog>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>

#include "common/killed_child.h"

namespace kx {
namespace {

using namespace std::chrono_literals;

const QRect kFullHd(0, 0, 1920, 1080);

TEST(FormPosClamp, ClassicRuleOnOneScreen) {
    struct Case {
        QPoint p;
        QSize size;
        QPoint expected;
    } cases[] = {
        {{-50, 20}, {300, 200}, {0, 20}},
        {{1800, 20}, {400, 200}, {1520, 20}},
        {{100, -7}, {300, 200}, {100, 0}},
        {{100, 1000}, {300, 200}, {100, 880}},
        {{1620, 880}, {300, 200}, {1620, 880}},  // touching the far edges is inside
        {{0, 0}, {1920, 1080}, {0, 0}},
        // Wider or taller than the screen: the far edge wins and the form starts before
        // the screen, whichever side it came from.
        {{-10, 5}, {2000, 100}, {-80, 5}},
        {{300, 5}, {2000, 100}, {-80, 5}},
        {{5, 900}, {100, 1200}, {5, -120}},
        // A negative size counts as none.
        {{1920, -3}, {-40, -40}, {1920, 0}},
        // Stored values at the ends of the range come back onto the screen.
        {{INT_MIN, INT_MAX}, {300, 200}, {0, 880}},
        {{INT_MAX, INT_MIN}, {300, 200}, {1620, 0}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(KxClampFormPos(c.p, c.size, {kFullHd}, 0), c.expected)
            << c.p.x() << "," << c.p.y() << " " << c.size.width() << "x" << c.size.height();
    }
}

TEST(FormPosClamp, ScreenWithTheLargestOverlapWins) {
    // A left monitor at negative coordinates beside the primary one, and a small one
    // below the primary.
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(-1280, 56, 1280, 1024),
                                  QRect(320, 1080, 1024, 768)};
    struct Case {
        const char* what;
        QPoint p;
        QSize size;
        int primary;
        QPoint expected;
    } cases[] = {
        {"on the left monitor, kept", {-1200, 100}, {400, 300}, 0, {-1200, 100}},
        {"left monitor, above its top", {-1200, 10}, {400, 300}, 0, {-1200, 56}},
        {"left monitor, off its left", {-1300, 200}, {400, 300}, 0, {-1280, 200}},
        // 150 columns on the left monitor, 250 on the primary: the primary wins and the
        // form's left edge is pulled onto it.
        {"straddling, more on primary", {-150, 100}, {400, 300}, 1, {0, 100}},
        {"straddling, more on left", {-250, 100}, {400, 300}, 0, {-400, 100}},
        {"mostly on the lower monitor", {400, 1000}, {300, 400}, 0, {400, 1080}},
        // Equal overlap: the earlier screen in the list.
        {"tie", {-200, 100}, {400, 300}, 1, {0, 100}},
        // Nowhere: the primary screen, whichever it is; out of range means the first.
        {"nowhere, primary 0", {5000, 5000}, {400, 300}, 0, {1520, 780}},
        {"nowhere, primary 1", {5000, 5000}, {400, 300}, 1, {-400, 780}},
        {"nowhere, primary 2", {-5000, -5000}, {400, 300}, 2, {320, 1080}},
        {"nowhere, primary -1", {-5000, 5000}, {400, 300}, -1, {0, 780}},
        {"nowhere, primary 3", {5000, -5000}, {400, 300}, 3, {1520, 0}},
        // A form without area is placed by its top-left pixel.
        {"empty form on left monitor", {-640, 500}, {0, 0}, 0, {-640, 500}},
        {"empty form at the far edge", {1920, 500}, {0, 0}, 0, {1920, 500}},
        {"empty form at the bottom edge", {100, 1080}, {0, 0}, 0, {100, 1080}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(KxClampFormPos(c.p, c.size, screens, c.primary), c.expected) << c.what;
    }
}

TEST(FormPosClamp, OverlapIsCountedOnlyWhereTheFormLies) {
    const QRect a(0, 0, 1920, 1080), b(1920, 0, 1920, 1080);
    // Far above and left of both: no overlap anywhere (two negative extents do not make
    // one), so the primary screen takes it.
    EXPECT_EQ(KxClampFormPos({-5000, -5000}, {400, 300}, {a, b}, 0), QPoint(0, 0));
    // A form without area counts as its top-left pixel, which lies on a, the second screen.
    EXPECT_EQ(KxClampFormPos({1919, 100}, {0, 0}, {b, a}, 1), QPoint(1919, 100));
    const QRect below(0, 1080, 1920, 1080);
    EXPECT_EQ(KxClampFormPos({100, 1079}, {0, 0}, {below, a}, 1), QPoint(100, 1079));
}

TEST(FormPosClamp, NoScreensOrExtremeScreens) {
    EXPECT_EQ(KxClampFormPos({-5000, 7}, {400, 300}, {}, 0), QPoint(-5000, 7));
    // right - W below the 32-bit range saturates instead of wrapping round.
    const QRect corner(INT_MIN, INT_MIN, 10, 10);
    EXPECT_EQ(KxClampFormPos({0, 0}, {1000, 1000}, {corner}, 0), QPoint(INT_MIN, INT_MIN));
    const QRect far(QPoint(INT_MAX - 99, INT_MAX - 99), QPoint(INT_MAX, INT_MAX));
    EXPECT_EQ(KxClampFormPos({INT_MAX, 0}, {0, 0}, {far}, 0), QPoint(INT_MAX, INT_MAX - 99));
}

// Every test gets its own INI file and leaves the default store alone.
class FormPos : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        SetFormPosSettingsFactory([this] {
            ++opened_;
            return std::make_unique<QSettings>(iniName(), QSettings::IniFormat);
        });
        screen_ = QGuiApplication::primaryScreen()->availableGeometry();
        ASSERT_EQ(screen_.topLeft(), QPoint(0, 0));
        ASSERT_GE(screen_.width(), 400);
        ASSERT_GE(screen_.height(), 300);
    }
    void TearDown() override { SetFormPosSettingsFactory(nullptr); }

    QString iniName() const { return dir_.filePath("positions.ini"); }
    QVariant stored(const char* className) const {
        QSettings ini(iniName(), QSettings::IniFormat);
        return ini.value(QStringLiteral("SOFTWARE/Kexano VCL/Data/%1/Position").arg(className));
    }
    // An invalid value removes the entry.
    void store(const char* className, const QVariant& value) const {
        QSettings ini(iniName(), QSettings::IniFormat);
        const QString key = QStringLiteral("SOFTWARE/Kexano VCL/Data/%1/Position").arg(className);
        if (value.isValid())
            ini.setValue(key, value);
        else
            ini.remove(key);
    }
    static QByteArray Bytes(std::initializer_list<uint8_t> b) {
        return QByteArray(reinterpret_cast<const char*>(std::data(b)), qsizetype(b.size()));
    }

    QTemporaryDir dir_;
    QRect screen_;
    int opened_ = 0;
};

TEST_F(FormPos, SavesTheClampedPositionAsEightLittleEndianBytes) {
    struct Case {
        QPoint at;
        QSize size;
        QByteArray bytes;
    } cases[] = {
        {{0x102, 0x103}, {1, 1}, Bytes({0x02, 0x01, 0, 0, 0x03, 0x01, 0, 0})},
        {{-50, 20}, {100, 100}, Bytes({0, 0, 0, 0, 20, 0, 0, 0})},
        // Wider than the screen by 200: the left coordinate is -200 = 0xFFFFFF38.
        {{10, 3}, {screen_.width() + 200, 50}, Bytes({0x38, 0xFF, 0xFF, 0xFF, 3, 0, 0, 0})},
    };
    for (const Case& c : cases) {
        QWidget form;
        form.setGeometry(QRect(c.at, c.size));
        EXPECT_EQ(KxSaveFormPos(&form), 0);
        EXPECT_EQ(stored("QWidget").toByteArray(), c.bytes) << c.at.x() << "," << c.at.y();
        EXPECT_EQ(form.pos(), c.at) << "saving never moves the form";
    }
}

TEST_F(FormPos, RoundTripPerClass) {
    QWidget widget;
    widget.setGeometry(30, 40, 200, 100);
    QDialog dialog;
    dialog.setGeometry(50, 60, 200, 100);
    KxSaveFormPos(&widget);
    KxSaveFormPos(&dialog);

    QWidget widget2;
    widget2.setGeometry(300, 300, 120, 80);
    QDialog dialog2;
    dialog2.setGeometry(300, 300, 120, 80);
    KxLoadFormPos(&widget2);
    KxLoadFormPos(&dialog2);
    EXPECT_EQ(widget2.geometry(), QRect(30, 40, 120, 80));
    EXPECT_EQ(dialog2.geometry(), QRect(50, 60, 120, 80));

    // A form class without its own meta-object shares its base's entry.
    struct PlainForm : QWidget {};
    PlainForm plain;
    KxLoadFormPos(&plain);
    EXPECT_EQ(plain.pos(), QPoint(30, 40));
    EXPECT_EQ(opened_, 5);
}

TEST_F(FormPos, LoadClampsOrKeepsThePosition) {
    const QPoint start(33, 44);
    const int right = screen_.x() + screen_.width(), bottom = screen_.y() + screen_.height();
    struct Case {
        const char* what;
        QVariant value;  // invalid: nothing stored
        QPoint expected;
    } cases[] = {
        {"nothing stored", QVariant(), start},
        {"seven bytes", Bytes({1, 0, 0, 0, 2, 0, 0}), start},
        {"nine bytes", Bytes({1, 0, 0, 0, 2, 0, 0, 0, 0}), start},
        {"empty", QByteArray(), start},
        {"stored", Bytes({1, 0, 0, 0, 2, 0, 0, 0}), QPoint(1, 2)},
        // A monitor that is gone: far right and below, then far left and above.
        {"gone right", Bytes({0x40, 0x42, 0x0F, 0, 0x40, 0x42, 0x0F, 0}),
         QPoint(right - 120, bottom - 80)},
        {"gone left", Bytes({0xC0, 0xBD, 0xF0, 0xFF, 0x00, 0x00, 0x00, 0x80}), QPoint(0, 0)},
    };
    for (const Case& c : cases) {
        store("QWidget", c.value);
        QWidget form;
        form.setGeometry(QRect(start, QSize(120, 80)));
        KxLoadFormPos(&form);
        EXPECT_EQ(form.pos(), c.expected) << c.what;
        EXPECT_EQ(form.size(), QSize(120, 80)) << c.what;
    }
}

TEST_F(FormPos, MissingEntryLeavesEvenAnOffScreenFormAlone) {
    store("QDialog", Bytes({1, 0, 0, 0, 2, 0, 0, 0}));
    QWidget form;
    form.setGeometry(-5000, -5000, 100, 100);
    KxLoadFormPos(&form);
    EXPECT_EQ(form.pos(), QPoint(-5000, -5000));
}

TEST_F(FormPos, NullFormAndNoStoreDoNothing) {
    EXPECT_EQ(KxSaveFormPos(nullptr), int(QSettings::NoError));
    KxLoadFormPos(nullptr);
    EXPECT_EQ(opened_, 0);
    EXPECT_FALSE(QFile::exists(iniName()));

    store("QWidget", Bytes({1, 0, 0, 0, 2, 0, 0, 0}));
    SetFormPosSettingsFactory([] { return std::unique_ptr<QSettings>(); });
    QWidget form;
    form.setGeometry(33, 44, 100, 100);
    KxLoadFormPos(&form);
    EXPECT_EQ(KxSaveFormPos(&form), int(QSettings::AccessError));  // not stored: a failure
    EXPECT_EQ(form.pos(), QPoint(33, 44));
    EXPECT_EQ(stored("QWidget").toByteArray(), Bytes({1, 0, 0, 0, 2, 0, 0, 0}));
}

// While it lives, writing a file beyond limit bytes fails with EFBIG, as on a full disk
// (root included, unlike permission bits).
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t limit) {
        ::getrlimit(RLIMIT_FSIZE, &saved_);
        oldHandler_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit l = saved_;
        l.rlim_cur = std::min(limit, saved_.rlim_max);
        ::setrlimit(RLIMIT_FSIZE, &l);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, oldHandler_);
    }

  private:
    rlimit saved_{};
    void (*oldHandler_)(int) = nullptr;
};

TEST_F(FormPos, AFailedSaveIsReportedAndKeepsThePreviousStore) {
    // A previous store of some size, so that the new one cannot be written whole.
    for (int i = 0; i < 50; ++i)
        store(qPrintable(QStringLiteral("Form%1").arg(i)), Bytes({1, 0, 0, 0, 2, 0, 0, 0}));
    const QByteArray previous = test::ReadFileBytes(iniName());
    ASSERT_GT(previous.size(), 1000);
    QFile plain(dir_.filePath("plain"));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();

    const struct {
        const char* what;
        QString store;
        rlim_t sizeLimit;
    } cases[] = {
        {"disk full", iniName(), 100},
        {"folder is a regular file", dir_.filePath("plain/sub/positions.ini"), RLIM_INFINITY},
    };
    for (const auto& c : cases) {
        SetFormPosSettingsFactory(
            [&] { return std::make_unique<QSettings>(c.store, QSettings::IniFormat); });
        QWidget form;
        form.setGeometry(70, 80, 100, 100);
        int result = 0;
        {
            const FileSizeLimit limit(c.sizeLimit);
            result = KxSaveFormPos(&form);
        }
        EXPECT_EQ(result, int(QSettings::AccessError)) << c.what;
        EXPECT_EQ(test::ReadFileBytes(iniName()), previous) << c.what;
        EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden),
                  QStringList({"plain", "positions.ini"}))
            << c.what;
    }
}

TEST(KilledWhileSaving, FormPositionsLeaveACompleteStore) {
    const auto save = [](const QString& path, int variant) {
        SetFormPosSettingsFactory(
            [path] { return std::make_unique<QSettings>(path, QSettings::IniFormat); });
        QWidget form;
        form.setGeometry(10 + 20 * variant, 20, 100, 80);
        KxSaveFormPos(&form);
        SetFormPosSettingsFactory(nullptr);
    };
    const auto load = [](const QString& path) {
        const QSettings ini(path, QSettings::IniFormat);
        return ini.status() == QSettings::NoError
                   ? ini.value("SOFTWARE/Kexano VCL/Data/QWidget/Position").toByteArray()
                   : QByteArray();
    };
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const test::TKillReport report = test::KillWhileSaving(
        test::ReplacingWriter("formpos", "positions.ini", save, load), dir.path(), 2500ms);
    EXPECT_GE(report.kills, 10);
    EXPECT_TRUE(report.faults.isEmpty()) << report.faults.join('\n').toStdString();
    std::printf("[ killed   ] formpos: %d kills\n", report.kills);
}

}  // namespace
}  // namespace kx
