// Feeds the live-panel runner's bindings files (JSON) to its parser. Invariants: a result
// or errors, never both; at most kMaxErrors errors, each naming a JSON path; the same
// input parses the same way twice; every binding of a result names a known source, a
// widget and a property, a channel only in 1..8, and a bit field within 32 bits; the
// stale times lie in 0..86400000.
#include <QStringList>
#include <algorithm>

#include "bindingsfile.h"
#include "fuzz_util.h"

namespace {

using kx::panel::BindingsParseResult;

constexpr int kMaxDocument = 8192;
constexpr int kMaxStaleMs = 86400000;

bool ErrorsNamePaths(const QStringList& errors) {
    for (const QString& e : errors) {
        if (!e.contains(QStringLiteral(": "))) return false;
    }
    return true;
}

void CheckResult(const BindingsParseResult& r, const QString& detail) {
    KX_FUZZ_CHECK(r.File.has_value() == r.Errors.isEmpty(), detail);
    KX_FUZZ_CHECK(r.Errors.size() <= kx::panel::kMaxErrors, detail);
    KX_FUZZ_CHECK(ErrorsNamePaths(r.Errors), detail + " errors: " + r.Errors.join('\n'));
    if (!r.File) return;
    KX_FUZZ_CHECK(r.File->StaleAfterMs >= 0 && r.File->StaleAfterMs <= kMaxStaleMs, detail);
    for (const kx::panel::BindingConfig& b : r.File->Bindings) {
        const QString where = detail + " at " + b.Path;
        KX_FUZZ_CHECK(r.File->FindSource(b.Source) != nullptr, where);
        KX_FUZZ_CHECK(!b.Widget.isEmpty() && (b.Channel > 0 || !b.Property.isEmpty()), where);
        KX_FUZZ_CHECK(b.Channel >= 0 && b.Channel <= 8, where);
        KX_FUZZ_CHECK(b.StaleAfterMs >= 0 && b.StaleAfterMs <= kMaxStaleMs, where);
        KX_FUZZ_CHECK(!b.Scale.HasBitField() || (b.Scale.Bit <= 31 && b.Scale.Bits >= 1 &&
                                                 b.Scale.Bit + b.Scale.Bits <= 32),
                      where);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray json(reinterpret_cast<const char*>(data),
                          qsizetype(std::min<size_t>(size, kMaxDocument)));
    const BindingsParseResult first = kx::KxPanelParseBindings(json);
    const QString detail = QStringLiteral("document \"%1\"").arg(QString::fromUtf8(json.left(200)));
    CheckResult(first, detail);
    const BindingsParseResult again = kx::KxPanelParseBindings(json);
    KX_FUZZ_CHECK(again.Errors == first.Errors && again.Warnings == first.Warnings &&
                      again.File.has_value() == first.File.has_value(),
                  detail + " parses differently the second time");
    return 0;
}
