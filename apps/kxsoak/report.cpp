#include "report.h"

namespace kxsoak {

namespace {

QString Row(const TSoakResult& r) {
    return QString("%1 %2 %3 %4 %5 %6 %7 %8 %9")
        .arg(r.ClassName, -20)
        .arg(r.Readings, 10)
        .arg(r.Signals, 10)
        .arg(r.Deletions, 6)
        .arg(r.WarmKiB, 10)
        .arg(r.EndKiB, 10)
        .arg(r.TotalKiBPerMillion, 12, 'f', 1)
        .arg(r.GrowthKiBPerMillion, 12, 'f', 1)
        .arg(r.Seconds, 8, 'f', 1);
}

}  // namespace

void PrintReport(const std::vector<TSoakResult>& results, QTextStream& out) {
    out << QString("%1 %2 %3 %4 %5 %6 %7 %8 %9\n")
               .arg("component", -20)
               .arg("readings", 10)
               .arg("signals", 10)
               .arg("dels", 6)
               .arg("warm_kib", 10)
               .arg("end_kib", 10)
               .arg("total/1e6", 12)
               .arg("median/1e6", 12)
               .arg("seconds", 8);
    int64_t readings = 0;
    double growth = 0;
    double seconds = 0;
    for (const TSoakResult& r : results) {
        out << Row(r) << "\n";
        readings += r.Readings;
        growth += r.GrowthKiBPerMillion;
        seconds += r.Seconds;
    }
    out << QString(
               "total %1 components, %2 readings, growth %3 KiB per 10^6 readings "
               "(sum of the medians), %4 s\n")
               .arg(results.size())
               .arg(readings)
               .arg(growth, 0, 'f', 1)
               .arg(seconds, 0, 'f', 1);
    out.flush();
}

void PrintProgress(const TSoakResult& result, QTextStream& out) {
    const auto& q = result.QuarterKiB;
    out << "soaked " << Row(result) << "  quarters " << q[0] << " " << q[1] << " " << q[2] << " "
        << q[3] << " KiB\n";
    out.flush();
}

}  // namespace kxsoak
