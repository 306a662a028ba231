// kxsoak: every component of the catalogue fed a long stream of readings and property
// changes; proves that nothing crashes and that memory stays flat.
//
// Exit status: 0; 1 when the heap of a component grew by --max-growth-kib or more per 10^6
// readings; 2 for bad arguments or an unknown component.
#include <QApplication>
#include <QSet>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "blinkdriver.h"
#include "componentsoak.h"
#include "feeders.h"
#include "kx/blink/flashtimer.h"
#include "kx/catalogue/catalogue.h"
#include "kx/host/messagebox.h"
#include "report.h"
#include "rssprobe.h"
#include "soakapplication.h"
#include "soakoptions.h"

namespace {

using kxsoak::TSoakOptions;
using kxsoak::TSoakResult;

std::vector<const kx::TKxCatalogueEntry*> Selected(const TSoakOptions& options) {
    std::vector<const kx::TKxCatalogueEntry*> entries;
    if (!options.Component.isEmpty()) {
        if (const kx::TKxCatalogueEntry* entry = kx::KxFindComponent(options.Component)) {
            entries.push_back(entry);
        }
        return entries;
    }
    for (const kx::TKxCatalogueEntry& entry : kx::KxCatalogue())
        entries.push_back(&entry);
    return entries;
}

// Qt's own warnings (fonts without a script, painters on empty images) come by the
// thousand with the odd texts and sizes the soak uses: each distinct one is shown once.
void ShowEachWarningOnce(QtMsgType type, const QMessageLogContext&, const QString& text) {
    static QSet<QString> seen;
    if (type == QtFatalMsg) abort();
    if (seen.size() < 200 && !seen.contains(text)) {
        seen.insert(text);
        fprintf(stderr, "%s\n", qPrintable(text));
    }
}

// No dialogs and no sounds: nobody is there to press OK.
void SilenceUserInterface() {
    kx::SetMessageBoxHook([](const QString&, const QString&, int flags) {
        return kx::DefaultMessageBoxResult(flags);
    });
    kx::SetBeepHook([] {});
}

std::vector<TSoakResult> SoakAll(const std::vector<const kx::TKxCatalogueEntry*>& entries,
                                 const TSoakOptions& options, QTextStream& out) {
    kxsoak::TBlinkDriver blink;
    const auto feeders = kxsoak::MakeFeeders();
    std::vector<TSoakResult> results;
    for (const kx::TKxCatalogueEntry* entry : entries) {
        // The family is told by an instance: the catalogue holds makers, not types.
        QWidget* probe = entry->Create(nullptr);
        kxsoak::TFeeder& feeder = kxsoak::FeederFor(feeders, probe);
        delete probe;
        kxsoak::TComponentSoak soak(*entry, feeder, blink, options.Seed, options.Readings,
                                    options.ChurnEvery);
        results.push_back(soak.Run());
        kxsoak::PrintProgress(results.back(), out);
    }
    // The service outlives its last subscriber; stop it while the fake clock still runs.
    kx::ClearFlashList();
    delete kx::FlashTimerInstance();
    return results;
}

bool WithinLimit(const std::vector<TSoakResult>& results, const TSoakOptions& options,
                 QTextStream& err) {
    if (!options.MaxGrowthKiB) return true;
    bool ok = true;
    for (const TSoakResult& r : results) {
        if (r.HeapKiBPerMillion >= *options.MaxGrowthKiB) {
            err << r.ClassName << ": the heap grew " << r.HeapKiBPerMillion
                << " KiB per 10^6 readings (median quarter), limit " << *options.MaxGrowthKiB
                << "\n";
            ok = false;
        }
    }
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    kxsoak::PinLargeBlocksToMmap();
    kxsoak::TSoakApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    QString error;
    const auto options = kxsoak::ParseSoakOptions(app.arguments(), error);
    if (!options) {
        err << "kxsoak: " << error << "\n";
        return 2;
    }
    if (options->List) {
        for (const kx::TKxCatalogueEntry& entry : kx::KxCatalogue())
            out << entry.ClassName << "\n";
        return 0;
    }
    const auto entries = Selected(*options);
    if (entries.empty()) {
        err << "kxsoak: no component named " << options->Component << "\n";
        return 2;
    }
    SilenceUserInterface();
    qInstallMessageHandler(ShowEachWarningOnce);
    const std::vector<TSoakResult> results = SoakAll(entries, *options, out);
    if (options->Report) kxsoak::PrintReport(results, out);
    out << "peak resident " << kxsoak::PeakResidentKiB() << " KiB\n";
    out.flush();
    return WithinLimit(results, *options, err) ? 0 : 1;
}
