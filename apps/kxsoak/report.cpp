#include "report.h"

#include <QStringList>

namespace kxsoak {

namespace {

QString Int(int64_t v, int width) {
    return QString::number(v).rightJustified(width);
}

QString Rate(double v) {
    return QString::number(v, 'f', 1).rightJustified(11);
}

QString Row(const TSoakResult& r) {
    return QStringList{r.ClassName.leftJustified(20),
                       Int(r.Readings, 9),
                       Int(r.Signals, 9),
                       Int(r.Deletions, 6),
                       Int(r.WarmKiB, 8),
                       Int(r.EndKiB, 8),
                       Rate(r.TotalKiBPerMillion),
                       Rate(r.GrowthKiBPerMillion),
                       Int(r.WarmHeapKiB, 8),
                       Rate(r.HeapKiBPerMillion),
                       QString::number(r.Seconds, 'f', 1).rightJustified(7)}
        .join(u' ');
}

QString Quarters(const std::array<int64_t, 4>& q) {
    return QStringLiteral("%1 %2 %3 %4").arg(q[0]).arg(q[1]).arg(q[2]).arg(q[3]);
}

}  // namespace

void PrintReport(const std::vector<TSoakResult>& results, QTextStream& out) {
    // Resident size (rss) and heap in use, in KiB; growth rates in KiB per 10^6 readings.
    out << QStringList{QStringLiteral("component").leftJustified(20),
                       QStringLiteral("readings").rightJustified(9),
                       QStringLiteral("signals").rightJustified(9),
                       QStringLiteral("dels").rightJustified(6),
                       QStringLiteral("rss_warm").rightJustified(8),
                       QStringLiteral("rss_end").rightJustified(8),
                       QStringLiteral("rss_total").rightJustified(11),
                       QStringLiteral("rss_median").rightJustified(11),
                       QStringLiteral("heap").rightJustified(8),
                       QStringLiteral("heap_median").rightJustified(11),
                       QStringLiteral("seconds").rightJustified(7)}
               .join(u' ')
        << "\n";
    int64_t readings = 0;
    double heap = 0;
    double seconds = 0;
    for (const TSoakResult& r : results) {
        out << Row(r) << "\n";
        readings += r.Readings;
        heap += r.HeapKiBPerMillion;
        seconds += r.Seconds;
    }
    out << QStringLiteral(
               "total %1 components, %2 readings, heap growth %3 KiB per 10^6 readings "
               "(sum of the medians), %4 s\n")
               .arg(results.size())
               .arg(readings)
               .arg(heap, 0, 'f', 1)
               .arg(seconds, 0, 'f', 1);
    out.flush();
}

void PrintProgress(const TSoakResult& result, QTextStream& out) {
    out << "soaked " << Row(result) << "  quarters rss " << Quarters(result.QuarterKiB) << " heap "
        << Quarters(result.HeapQuarterKiB) << " KiB\n";
    out.flush();
}

}  // namespace kxsoak
