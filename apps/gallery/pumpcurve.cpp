#include "pumpcurve.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace kxgallery {
namespace {

constexpr double kShutOffHead = 48.0;  // m at full speed and no flow
constexpr double kPumpLoss = 0.035;    // m per (m³/h)²
constexpr double kStaticHead = 10.0;   // m the system needs at no flow
constexpr double kPipeLoss = 0.025;    // m per (m³/h)²

double pumpHead(double flow, double speed) {
    return speed * speed * kShutOffHead - kPumpLoss * flow * flow;
}

double systemHead(double flow) {
    return kStaticHead + kPipeLoss * flow * flow;
}

QPointF toPlot(const QRect& plot, double flow, double head) {
    return QPointF(plot.left() + flow / PumpChart::kFlowMax * plot.width(),
                   plot.bottom() + 1 - head / PumpChart::kHeadMax * plot.height());
}

void drawCurve(QPainter& p, const QRect& plot, double (*head)(double, double), double speed) {
    QPainterPath path;
    for (int i = 0; i <= 60; ++i) {
        const double q = PumpChart::kFlowMax * i / 60.0, hd = head(q, speed);
        if (hd < 0) break;
        const QPointF pt = toPlot(plot, q, hd);
        i == 0 ? path.moveTo(pt) : path.lineTo(pt);
    }
    p.drawPath(path);
}

double systemCurve(double flow, double) {
    return systemHead(flow);
}

}  // namespace

PumpChart DrawPumpChart(int w, int h) {
    PumpChart chart;
    chart.picture = QImage(w, h, QImage::Format_RGB32);
    chart.picture.fill(QColor(16, 22, 30));
    chart.plot = QRect(40, 20, w - 52, h - 52);
    const QRect& plot = chart.plot;
    QPainter p(&chart.picture);
    p.setRenderHint(QPainter::Antialiasing);
    QFont f = p.font();
    f.setPixelSize(10);
    p.setFont(f);
    p.setPen(QColor(60, 70, 84));
    for (int q = 0; q <= 30; q += 5) {
        const QPointF a = toPlot(plot, q, 0);
        p.drawLine(a, toPlot(plot, q, PumpChart::kHeadMax));
    }
    for (int hd = 0; hd <= 50; hd += 10)
        p.drawLine(toPlot(plot, 0, hd), toPlot(plot, 30, hd));
    p.setPen(QColor(170, 180, 190));
    for (int q = 0; q <= 30; q += 10) {
        const QPointF a = toPlot(plot, q, 0);
        p.drawText(QRectF(a.x() - 20, a.y() + 3, 40, 12), Qt::AlignCenter, QString::number(q));
    }
    for (int hd = 0; hd <= 50; hd += 10) {
        const QPointF a = toPlot(plot, 0, hd);
        p.drawText(QRectF(a.x() - 34, a.y() - 6, 30, 12), Qt::AlignRight | Qt::AlignVCenter,
                   QString::number(hd));
    }
    p.drawText(QRectF(plot.left(), h - 16, plot.width(), 14), Qt::AlignCenter,
               QStringLiteral("Flow Q (m\u00B3/h)"));
    p.drawText(QRectF(4, 2, 60, 12), Qt::AlignLeft, QStringLiteral("H (m)"));
    for (double speed : {1.0, 0.8, 0.6}) {
        p.setPen(QPen(QColor(90, 160, 255), 1.6));
        drawCurve(p, plot, &pumpHead, speed);
        const QPointF label = toPlot(plot, 1.0, pumpHead(0, speed) + 1.0);
        p.drawText(label + QPointF(0, -2), QStringLiteral("%1 %").arg(int(speed * 100)));
    }
    p.setPen(QPen(QColor(230, 120, 90), 1.4, Qt::DashLine));
    drawCurve(p, plot, &systemCurve, 1.0);
    p.drawText(toPlot(plot, 2.0, systemHead(2.0) + 1.5), QStringLiteral("system"));
    return chart;
}

QPointF PumpOperatingPoint(double speed) {
    const double n = std::max(speed, 0.5);
    const double flow =
        std::sqrt(std::max(0.0, (n * n * kShutOffHead - kStaticHead) / (kPumpLoss + kPipeLoss)));
    return QPointF(flow, systemHead(flow));
}

}  // namespace kxgallery
