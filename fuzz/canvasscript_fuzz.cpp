// Feeds RunCanvasScript drawing scripts (UTF-8 text). Scripts whose `size` asks for more
// than 256 x 256 pixels are skipped, so that one input stays cheap (the language itself
// refuses more than 8192 x 8192). Invariants: nothing is thrown; a failure names a reason
// and a line within the script (0 only for a script without `size`); success leaves a
// bitmap of the size asked for; running the same script twice gives the same result and
// the same pixels.
#include <QString>
#include <QStringList>
#include <exception>
#include <memory>

#include "fuzz_util.h"
#include "kx/drawing/canvasscript.h"
#include "kx/drawing/scriptargs.h"

namespace {

using kx::TBitmap;
using kx::TScriptResult;

constexpr int kMaxScript = 4096;
constexpr int64_t kMaxPixels = 256 * 256;

// The pixels the script's `size` line asks for (it must be the first operation), or 0.
int64_t RequestedPixels(const QString& script) {
    for (const QString& line : script.split(u'\n')) {
        const QString t = line.trimmed();
        if (t.isEmpty() || t.startsWith(u'#')) continue;
        qsizetype pos = 0;
        QString op, w, h;
        if (!kx::TScriptArgs::NextWord(t, pos, op, nullptr)) return 0;
        if (op.compare(QLatin1String("size"), Qt::CaseInsensitive) != 0) return 0;
        int64_t width = 0, height = 0;
        if (!kx::TScriptArgs::NextWord(t, pos, w, nullptr) ||
            !kx::TScriptArgs::NextWord(t, pos, h, nullptr) || !kx::ParseScriptInteger(w, width) ||
            !kx::ParseScriptInteger(h, height)) {
            return 0;
        }
        return width > 0 && height > 0 && width <= 8192 && height <= 8192 ? width * height : 0;
    }
    return 0;
}

QString Describe(const QString& script, const TScriptResult& r) {
    return QStringLiteral("result ok %1 line %2 \"%3\" for script:\n%4")
        .arg(r.Ok)
        .arg(r.Line)
        .arg(r.Message, script);
}

void Check(const QString& script) {
    std::unique_ptr<TBitmap> first, second;
    const TScriptResult r = kx::RunCanvasScript(script, first);
    const TScriptResult again = kx::RunCanvasScript(script, second);
    const QString detail = Describe(script, r);
    KX_FUZZ_CHECK(r.Ok == again.Ok && r.Line == again.Line && r.Message == again.Message,
                  detail + "\nthen " + Describe(QString(), again));
    KX_FUZZ_CHECK(bool(first) == bool(second), detail);
    if (first) {
        KX_FUZZ_CHECK(first->Width() == second->Width() && first->Height() == second->Height() &&
                          first->Image() == second->Image(),
                      detail + "\ndraws differently the second time");
    }
    const qsizetype lines = script.count(u'\n') + 1;
    if (r.Ok) {
        KX_FUZZ_CHECK(first && r.Line == 0 && first->Width() >= 1 && first->Height() >= 1 &&
                          int64_t(first->Width()) * first->Height() == RequestedPixels(script),
                      detail);
    } else {
        KX_FUZZ_CHECK(!r.Message.isEmpty() && r.Line >= 0 && r.Line <= lines, detail);
        // The runner's last-resort catch: an exception inside an operation is a fault.
        KX_FUZZ_CHECK(!r.Message.startsWith(QLatin1String("internal error")), detail);
        if (r.Line == 0) KX_FUZZ_CHECK(!first, detail);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString script =
        QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)).left(kMaxScript);
    if (RequestedPixels(script) > kMaxPixels) return 0;
    try {
        Check(script);
    } catch (const std::exception& e) {
        kx::fuzz::Fail("no exception", __FILE__, __LINE__, script + "\n" + e.what());
    } catch (...) {
        kx::fuzz::Fail("no exception", __FILE__, __LINE__, script);
    }
    return 0;
}
