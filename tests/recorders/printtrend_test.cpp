// The trend printer: when it prints, what it writes, and where the curves land on a page.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPrinter>
#include <QTemporaryDir>
#include <QWidget>
#include <cmath>
#include <functional>
#include <memory>

#include "common/test_env.h"
#include "kx/recorders/printtrend.h"
#include "kx/recorders/trend.h"

namespace kx {
namespace {

const QRgb kArea = qRgb(0, 0, 128);  // the trend's Color in these tests (navy)

class PrintTrend : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        ASSERT_TRUE(dir_.isValid());
        trend_ = new TKxTrend(&form_);
        trend_->SetStartRecording(false);
        trend_->SetColor(clNavy);
        trend_->SetOptions(trend_->Options() & ~TrendOpt(opGrid));
        for (int ch = 3; ch <= 8; ++ch)
            trend_->Channel(ch)->SetVisible(false);
        printer_.SetTrend(trend_);
    }
    // count records; channel 1 (lime) and 2 (yellow) take the values of the functions.
    void fill(int count, std::function<float(int)> ch1, std::function<float(int)> ch2) {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(trend_->AddValue(ch1(i), ch2(i), 0, 0, 0, 0, 0, 0));
    }
    QString path(const char* name) const { return dir_.filePath(QString::fromLatin1(name)); }
    // The page as printed, and (measure) the chart's background on it.
    QImage png(QSize size = QSize(800, 600), bool measure = true) {
        const QString file = path("page.png");
        QFile::remove(file);
        EXPECT_TRUE(printer_.PrintToPng(file, size));
        QImage image(file);
        image = image.convertToFormat(QImage::Format_RGB32);
        if (!measure) return image;
        area_ = QRect();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) == kArea) area_ |= QRect(x, y, 1, 1);
        return image;
    }
    // Rows of column x inside the chart that have colour c.
    std::vector<int> rowsOf(const QImage& image, int x, QRgb c) const {
        std::vector<int> rows;
        for (int y = area_.top(); y <= area_.bottom(); ++y)
            if (image.pixel(x, y) == c) rows.push_back(y);
        return rows;
    }
    // The row of a fraction of the digit range (0 bottom, 1 top) in the chart.
    int rowAt(double fraction) const {
        return int(std::lround(area_.bottom() + 1 - fraction * (area_.height() + 1)));
    }

    QTemporaryDir dir_;
    QWidget form_;
    TKxTrend* trend_ = nullptr;
    TKxPrintTrend printer_{&form_};
    QRect area_;
};

MATCHER_P2(Near, expected, tolerance, "") {
    return std::abs(arg - expected) <= tolerance;
}

TEST_F(PrintTrend, PrintsOnlyWhatThereIs) {
    const QString pdf = path("a.pdf"), png = path("a.png");
    auto all = [&] {
        QFile::remove(pdf);
        QFile::remove(png);
        const bool a = printer_.PrintToPdf(pdf), b = printer_.PrintToPng(png, QSize(400, 300));
        EXPECT_EQ(a, b);
        EXPECT_EQ(QFile::exists(pdf), a);
        EXPECT_EQ(QFile::exists(png), b);
        return a;
    };
    EXPECT_FALSE(all()) << "no records";
    fill(
        20, [](int) { return 50.0f; }, [](int) { return 10.0f; });
    const struct {
        const char* name;
        int32_t first, last;
        bool prints;
        int32_t from, to;
    } ranges[] = {
        {"the whole store", -1, -1, true, 0, 19},
        {"any negative is an end", -7, -2, true, 0, 19},
        {"a part", 5, 9, true, 5, 9},
        {"clipped to the store", 3, 500, true, 3, 19},
        {"a single record past the end", 100, -1, true, 19, 19},
        {"reversed", 12, 4, false, 0, 0},
    };
    for (const auto& r : ranges) {
        printer_.SetFirstRecord(r.first);
        printer_.SetLastRecord(r.last);
        int32_t from = -9, to = -9;
        EXPECT_EQ(printer_.PrintRange(from, to), r.prints) << r.name;
        if (r.prints) {
            EXPECT_EQ(from, r.from) << r.name;
            EXPECT_EQ(to, r.to) << r.name;
        } else {
            EXPECT_EQ(from, -9) << r.name;
        }
        EXPECT_EQ(all(), r.prints) << r.name;
    }
    printer_.SetFirstRecord(-1);
    printer_.SetLastRecord(-1);
    EXPECT_TRUE(all());
    printer_.SetTrend(nullptr);
    EXPECT_FALSE(all()) << "no trend";
    printer_.SetTrend(trend_);
    delete trend_;
    trend_ = nullptr;
    EXPECT_EQ(printer_.Trend(), nullptr);
    EXPECT_FALSE(all()) << "a deleted trend";
}

TEST_F(PrintTrend, WritesCompleteFilesOrNone) {
    fill(
        30, [](int i) { return float(i); }, [](int) { return 5.0f; });
    const QString pdf = path("chart.pdf");
    ASSERT_TRUE(printer_.PrintToPdf(pdf));
    QFile f(pdf);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF")) << bytes.left(8).toStdString();
    EXPECT_GT(bytes.size(), 1000);

    const QString png = path("chart.png");
    ASSERT_TRUE(printer_.PrintToPng(png, QSize(321, 234)));
    EXPECT_EQ(QImage(png).size(), QSize(321, 234));

    const struct {
        const char* name;
        QString file;
        QSize size;
    } failures[] = {
        {"a missing folder", QStringLiteral("/no-such-folder-kx/x"), QSize(100, 100)},
        {"a folder", dir_.path(), QSize(100, 100)},
        {"an empty name", QString(), QSize(100, 100)},
        {"no width", png, QSize(0, 100)},
        {"negative height", png, QSize(100, -1)},
        {"too large", png, QSize(20000, 10)},
        {"no room inside the margins", png, QSize(60, 60)},
    };
    const QByteArray before = [&] {
        QFile p(png);
        p.open(QIODevice::ReadOnly);
        return p.readAll();
    }();
    for (const auto& c : failures) {
        EXPECT_FALSE(printer_.PrintToPng(c.file, c.size)) << c.name;
        if (c.size == QSize(100, 100)) {
            EXPECT_FALSE(printer_.PrintToPdf(c.file)) << c.name;
        }
    }
    // A failed print leaves the file it would have replaced alone.
    QFile p(png);
    ASSERT_TRUE(p.open(QIODevice::ReadOnly));
    EXPECT_EQ(p.readAll(), before);
    EXPECT_FALSE(QFile::exists(QStringLiteral("/no-such-folder-kx")));
}

TEST_F(PrintTrend, PrintsOnAPrinterInItsOrientation) {
    fill(
        10, [](int i) { return float(i * 10); }, [](int) { return 5.0f; });
    const struct {
        TPrintOrientation orientation;
        QPageLayout::Orientation expected;
    } cases[] = {{poLandscape, QPageLayout::Landscape}, {poPortrait, QPageLayout::Portrait}};
    for (const auto& c : cases) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString file = path(c.orientation == poPortrait ? "portrait.pdf" : "landscape.pdf");
        printer.setOutputFileName(file);
        printer_.SetOrientation(c.orientation);
        ASSERT_TRUE(printer_.Print(printer));
        EXPECT_EQ(printer.pageLayout().orientation(), c.expected);
        EXPECT_GT(QFileInfo(file).size(), 1000);
    }
    printer_.setOrientation(7);  // ignored
    EXPECT_EQ(printer_.Orientation(), poPortrait);
    printer_.SetMarginLeft(-1.0);
    printer_.SetMarginTop(std::nan(""));
    printer_.SetMarginRight(1001.0);
    printer_.SetMarginBottom(0.0);
    EXPECT_EQ(printer_.MarginLeft(), 10.0);
    EXPECT_EQ(printer_.MarginTop(), 10.0);
    EXPECT_EQ(printer_.MarginRight(), 10.0);
    EXPECT_EQ(printer_.MarginBottom(), 0.0);
}

TEST_F(PrintTrend, CurvesSpreadOverTheWidthAtTheirLevels) {
    // Channel 1 steps from 20 % to 80 % half way; channel 2 stays at 25 %.
    fill(
        40, [](int i) { return i < 20 ? 20.0f : 80.0f; }, [](int) { return 25.0f; });
    const struct {
        const char* name;
        int32_t first, last;
        double leftLevel, rightLevel;  // channel 1 at the chart's left and right edges
    } cases[] = {
        {"whole store", -1, -1, 0.2, 0.8},
        {"second half only", 20, 39, 0.8, 0.8},
        {"first half only", 0, 19, 0.2, 0.2},
    };
    for (const auto& c : cases) {
        printer_.SetFirstRecord(c.first);
        printer_.SetLastRecord(c.last);
        const QImage image = png();
        ASSERT_GT(area_.width(), 500) << c.name;
        ASSERT_GT(area_.height(), 300) << c.name;
        const QRgb lime = qRgb(0, 255, 0), yellow = qRgb(255, 255, 0);
        for (int x : {area_.left() + 2, area_.right() - 2}) {
            const double level = x < area_.center().x() ? c.leftLevel : c.rightLevel;
            const std::vector<int> rows = rowsOf(image, x, lime);
            ASSERT_EQ(rows.size(), 1u) << c.name << " at " << x;
            EXPECT_THAT(rows[0], Near(rowAt(level), 3)) << c.name << " at " << x;
            const std::vector<int> yRows = rowsOf(image, x, yellow);
            ASSERT_EQ(yRows.size(), 1u) << c.name << " at " << x;
            EXPECT_THAT(yRows[0], Near(rowAt(0.25), 3)) << c.name << " at " << x;
        }
    }
}

TEST_F(PrintTrend, DrawsBandsSeparatorsAndPeaks) {
    const QRgb lime = qRgb(0, 255, 0), yellow = qRgb(255, 255, 0), red = qRgb(255, 0, 0);
    // The fill channel: yellow from its curve down to the bottom.
    fill(
        10, [](int) { return 70.0f; }, [](int) { return 40.0f; });
    QImage image = png();  // measures the chart before the band covers part of it
    trend_->SetFillChannelNo(2);
    image = png(QSize(800, 600), false);
    const int mid = area_.center().x();
    EXPECT_EQ(image.pixel(mid, rowAt(0.2)), yellow);
    EXPECT_EQ(image.pixel(mid, rowAt(0.5)), kArea);
    const std::vector<int> line = rowsOf(image, mid, lime);
    ASSERT_EQ(line.size(), 1u);
    EXPECT_THAT(line[0], Near(rowAt(0.7), 3));
    trend_->SetFillChannelNo(0);

    // Separators: a block of five before record 5 of 10, as red lines at their places.
    trend_->SetColorSeparator(clRed);
    trend_->AddSeparator(5);
    ASSERT_EQ(trend_->RecordCount(), 15);
    image = png();
    auto redColumn = [&](int x) {
        const std::vector<int> rows = rowsOf(image, x, red);
        return rows.size() > size_t(area_.height() * 0.9);
    };
    const double step = double(area_.width()) / 14.0;
    for (int i = 5; i <= 9; ++i) {
        const int x = int(std::lround(area_.left() + i * step));
        EXPECT_TRUE(redColumn(x - 1) || redColumn(x) || redColumn(x + 1)) << "record " << i;
    }
    EXPECT_FALSE(redColumn(int(area_.left() + 2 * step))) << "record 2";

    // More records than columns: a one-record peak still shows.
    trend_->ClearRecords();
    trend_->SetStartRecording(false);
    fill(
        20000, [](int i) { return i == 12345 ? 100.0f : 10.0f; }, [](int) { return 0.0f; });
    image = png(QSize(400, 300));
    const int peak = int(std::lround(area_.left() + 12345.0 / 19999.0 * area_.width()));
    int top = area_.bottom();
    for (int x = peak - 2; x <= peak + 2; ++x)
        for (int y : rowsOf(image, x, lime))
            top = std::min(top, y);
    EXPECT_LE(top, area_.top() + 2);
}

TEST_F(PrintTrend, TextsTakeTheirRows) {
    fill(
        10, [](int) { return 50.0f; }, [](int) { return 50.0f; });
    const TTrendOptions base =
        trend_->Options() & ~(TrendOpt(opDate) | TrendOpt(opTime) | TrendOpt(opLeftScale) |
                              TrendOpt(opRightScale) | TrendOpt(opCaption));
    const struct {
        const char* name;
        QString title, caption;
        TTrendOptions options;
        bool lower, higher, narrower;  // than the bare chart: top lower, bottom higher
    } cases[] = {
        {"a title", QStringLiteral("Boiler"), QString(), 0, true, false, false},
        {"a caption", QString(), QStringLiteral("Boiler"), TrendOpt(opCaption), true, false, false},
        {"the caption option without a caption", QString(), QString(), TrendOpt(opCaption), false,
         false, false},
        {"time labels", QString(), QString(), TrendOpt(opTime), false, true, false},
        {"date labels", QString(), QString(), TrendOpt(opDate), false, true, false},
        {"date and time", QString(), QString(), TrendOpt(opTime) | TrendOpt(opDate), false, true,
         false},
        // The outer labels centre on the outer grid lines: half a label more above and below.
        {"scales", QString(), QString(), TrendOpt(opLeftScale) | TrendOpt(opRightScale), true, true,
         true},
    };
    trend_->SetOptions(base);
    png();
    const QRect plain = area_;
    for (const auto& c : cases) {
        printer_.SetTitle(c.title);
        trend_->SetCaption(c.caption);
        trend_->SetOptions(base | c.options);
        png();
        EXPECT_EQ(area_.top() > plain.top(), c.lower) << c.name;
        EXPECT_EQ(area_.bottom() < plain.bottom(), c.higher) << c.name;
        EXPECT_EQ(area_.width() < plain.width(), c.narrower) << c.name;
    }
    // Date labels alone are written under the chart.
    trend_->SetOptions(base | TrendOpt(opDate));
    const QImage dated = png();
    int ink = 0;
    for (int y = area_.bottom() + 2; y < dated.height(); ++y)
        for (int x = area_.left(); x <= area_.right(); ++x)
            ink += dated.pixel(x, y) != qRgb(255, 255, 255);
    EXPECT_GT(ink, 20);
    // Two label rows take more than one.
    trend_->SetOptions(base | TrendOpt(opTime));
    png();
    const int oneRow = area_.bottom();
    trend_->SetOptions(base | TrendOpt(opTime) | TrendOpt(opDate));
    png();
    EXPECT_LT(area_.bottom(), oneRow);
}

// Channel 8 is a curve in its own colour unless it is the lower limit; an enabled limit
// stands on the right scale's channel, channel 1 when there is none.
TEST_F(PrintTrend, LimitsDrawOnTheirChannels) {
    const QRgb silver = qRgb(192, 192, 192), blue = qRgb(0, 0, 255), red = qRgb(255, 0, 0);
    trend_->Channel1()->SetVisible(false);
    trend_->Channel2()->SetVisible(false);
    trend_->Channel(8)->SetVisible(true);
    trend_->Channel(8)->SetColor(clSilver);
    trend_->LimitLower()->SetColor(clBlue);
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(trend_->AddValue(0, 0, 0, 0, 0, 0, 0, 50));
    QImage image = png();
    const int mid = area_.center().x();
    EXPECT_FALSE(rowsOf(image, mid, silver).empty());
    EXPECT_TRUE(rowsOf(image, mid, blue).empty());
    trend_->SetOptions(trend_->Options() | TrendOpt(opCh8isLL));
    image = png(QSize(800, 600), false);
    EXPECT_TRUE(rowsOf(image, mid, silver).empty());
    EXPECT_FALSE(rowsOf(image, mid, blue).empty());

    trend_->SetOptions(trend_->Options() & ~TrendOpt(opCh8isLL));
    trend_->Channel(8)->SetVisible(false);
    trend_->Channel2()->SetValueTo(1000.0f);
    trend_->SetAbsScaleCh(0);
    trend_->LimitUpper()->SetColor(clRed);
    trend_->LimitUpper()->SetValue(50.0f);
    trend_->LimitUpper()->SetEnabled(true);
    image = png();
    const std::vector<int> line = rowsOf(image, mid, red);
    ASSERT_FALSE(line.empty());
    EXPECT_THAT(line.front(), Near(rowAt(0.5), 3));
}

// The time span above the chart names one time for one record and a range for more; the
// outer time labels stay within the chart's width.
TEST_F(PrintTrend, SpanAndOuterLabels) {
    trend_->SetOptions((trend_->Options() | TrendOpt(opTime)) &
                       ~(TrendOpt(opLeftScale) | TrendOpt(opRightScale) | TrendOpt(opCaption)));
    // Columns with ink in rows y0..y1, as the extent [first, last].
    auto inkSpan = [](const QImage& img, int y0, int y1) {
        int first = img.width(), last = -1;
        for (int y = std::max(y0, 0); y <= std::min(y1, img.height() - 1); ++y)
            for (int x = 0; x < img.width(); ++x)
                if (img.pixel(x, y) != qRgb(255, 255, 255)) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
        return std::make_pair(first, last);
    };
    ASSERT_TRUE(trend_->AddValue(50, 50, 0, 0, 0, 0, 0, 0));
    QImage image = png();
    const auto one = inkSpan(image, 0, area_.top() - 2);
    test::FakeClock().Advance(1000);
    ASSERT_TRUE(trend_->AddValue(50, 50, 0, 0, 0, 0, 0, 0));
    image = png();
    const auto two = inkSpan(image, 0, area_.top() - 2);
    ASSERT_GT(one.second, one.first);
    EXPECT_GT(two.second - two.first, 3 * (one.second - one.first) / 2);
    // Two records, two labels: the first starts at the chart's left edge, the last ends at
    // its right edge.
    const auto labels = inkSpan(image, area_.bottom() + 2, image.height() - 1);
    EXPECT_GE(labels.first, area_.left() - 1);
    EXPECT_LE(labels.second, area_.right() + 1);
    EXPECT_GT(labels.second, area_.right() - 30);
}

TEST_F(PrintTrend, StaysHiddenAtRunTimeAndShowsAGlyphInTheDesigner) {
    TKxPrintTrend run(&form_);
    run.show();
    EXPECT_TRUE(run.isHidden());
    TKxPrintTrend design(&form_);
    design.SetDesigning(true);
    design.show();
    EXPECT_FALSE(design.isHidden());
    design.Loaded();
    design.PaintToSurface();
    int ink = 0;
    const QImage& s = design.Surface().Image();
    for (int y = 0; y < s.height(); ++y)
        for (int x = 0; x < s.width(); ++x)
            ink += qAlpha(s.pixel(x, y)) != 0;
    EXPECT_GT(ink, s.width() * s.height() / 2);
    run.Loaded();
    run.PaintToSurface();
    EXPECT_EQ(qAlpha(run.Surface().Image().pixel(14, 14)), 0);
    // Too narrow for the glyph: nothing.
    design.SetBounds(0, 0, 6, 40);
    design.PaintToSurface();
    for (int y = 0; y < design.Surface().Image().height(); ++y)
        EXPECT_EQ(qAlpha(design.Surface().Image().pixel(2, y)), 0) << y;
}

}  // namespace
}  // namespace kx
