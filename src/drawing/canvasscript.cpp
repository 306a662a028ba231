#include "kx/drawing/canvasscript.h"

#include <QStringList>

#include "kx/drawing/scriptops.h"

namespace kx {

namespace {

const TScriptOpDef* findOp(const QString& name) {
    for (auto table : {CanvasScriptCanvasOps(), CanvasScriptToolkitOps()})
        for (const TScriptOpDef& def : table)
            if (name.compare(QLatin1String(def.Name), Qt::CaseInsensitive) == 0) return &def;
    return nullptr;
}

QString countMessage(const TScriptOpDef& def, int got) {
    QString expected;
    if (def.MaxArgs < 0)
        expected = QStringLiteral("at least %1 arguments").arg(def.MinArgs);
    else if (def.MinArgs == def.MaxArgs)
        expected =
            QStringLiteral("%1 argument%2").arg(def.MinArgs).arg(def.MinArgs == 1 ? "" : "s");
    else
        expected = QStringLiteral("%1 to %2 arguments").arg(def.MinArgs).arg(def.MaxArgs);
    return QStringLiteral("%1 expects %2 (%3), got %4")
        .arg(QLatin1String(def.Name), expected, QLatin1String(def.Usage))
        .arg(got);
}

// Runs one non-blank, non-comment line; returns an empty string or the error.
QString runLine(TScriptContext& ctx, const QString& line) {
    qsizetype pos = 0;
    QString name, error;
    if (!TScriptArgs::NextWord(line, pos, name, &error)) return error;
    const TScriptOpDef* def = findOp(name);
    if (!def) return QStringLiteral("unknown operation '%1'").arg(name);
    const bool isSize = name.compare(QLatin1String("size"), Qt::CaseInsensitive) == 0;
    if (!ctx.Bitmap && !isSize)
        return QStringLiteral("%1 before size (size W H must come first)")
            .arg(QLatin1String(def->Name));
    if (ctx.Bitmap && isSize) return QStringLiteral("size given twice");

    TScriptArgs args(QLatin1String(def->Name), QLatin1String(def->Usage));
    if (!args.Split(line, pos, def->Text ? def->MinArgs : -1)) return args.Error();
    if (args.Count() < def->MinArgs || (def->MaxArgs >= 0 && args.Count() > def->MaxArgs))
        return countMessage(*def, args.Count());
    if (def->Text && !args.HasText())
        return QStringLiteral("%1 expects a text after its %2 arguments (%3)")
            .arg(QLatin1String(def->Name))
            .arg(def->MinArgs)
            .arg(QLatin1String(def->Usage));
    def->Run(ctx, args);
    return args.Error();
}

TScriptResult runScript(const QString& script, std::unique_ptr<TBitmap>& out) {
    TScriptContext ctx(out);
    const QStringList lines = script.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString trimmed = lines[i].trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(u'#')) continue;
        const QString error = runLine(ctx, trimmed);
        if (!error.isEmpty()) {
            if (out) out->Canvas().Release();
            return TScriptResult{false, int32_t(i + 1), error};
        }
    }
    if (!out) return TScriptResult{false, 0, QStringLiteral("no size line (size W H)")};
    out->Canvas().Release();
    return TScriptResult{};
}

}  // namespace

TScriptResult RunCanvasScript(const QString& script, std::unique_ptr<TBitmap>& out) {
    out.reset();
    try {
        return runScript(script, out);
    } catch (const std::exception& e) {
        return TScriptResult{false, 0, QStringLiteral("internal error: %1").arg(e.what())};
    } catch (...) {
        return TScriptResult{false, 0, QStringLiteral("internal error")};
    }
}

std::vector<TScriptOperation> CanvasScriptOperations() {
    std::vector<TScriptOperation> ops;
    for (auto table : {CanvasScriptCanvasOps(), CanvasScriptToolkitOps()})
        for (const TScriptOpDef& def : table)
            ops.push_back({QLatin1String(def.Name), QLatin1String(def.Usage)});
    return ops;
}

}  // namespace kx
