// Feeds Format a format text and up to six arguments drawn from the input (32-bit and
// 64-bit integers, doubles from raw bytes, texts). Invariants: no exception leaves it
// (a bad directive is copied literally, see format.h), the same call gives the same text,
// a text without '%' comes back unchanged, the length stays within what the directives
// can produce (each pads to at most 2^20), and single directives agree with the plain
// conversions: %d with IntToStr, %x with IntToHex, %g with FloatToStr, %s with the text.
#include <QString>
#include <exception>
#include <vector>

#include "fuzz_util.h"
#include "kx/host/format.h"

namespace {

using kx::TFormatArg;

constexpr int kMaxFormat = 256;
constexpr int kMaxArgText = 32;
constexpr qsizetype kMaxWidth = qsizetype(1) << 20;

QString FormatArgs(const QString& fmt, const std::vector<TFormatArg>& a) {
    switch (a.size()) {
        case 0:
            return kx::Format(fmt, {});
        case 1:
            return kx::Format(fmt, {a[0]});
        case 2:
            return kx::Format(fmt, {a[0], a[1]});
        case 3:
            return kx::Format(fmt, {a[0], a[1], a[2]});
        case 4:
            return kx::Format(fmt, {a[0], a[1], a[2], a[3]});
        case 5:
            return kx::Format(fmt, {a[0], a[1], a[2], a[3], a[4]});
        default:
            return kx::Format(fmt, {a[0], a[1], a[2], a[3], a[4], a[5]});
    }
}

TFormatArg NextArg(FuzzedDataProvider& in) {
    switch (in.ConsumeIntegralInRange(0, 3)) {
        case 0:
            return TFormatArg(in.ConsumeIntegral<int32_t>());
        case 1:
            return TFormatArg(static_cast<long long>(in.ConsumeIntegral<int64_t>()));
        case 2:
            return TFormatArg(kx::fuzz::DoubleFromBits(in.ConsumeIntegral<uint64_t>()));
        default:
            return TFormatArg(QString::fromUtf8(in.ConsumeRandomLengthString(kMaxArgText)));
    }
}

QString Describe(const QString& fmt, const std::vector<TFormatArg>& args) {
    QString s = QStringLiteral("format \"%1\" args").arg(fmt);
    for (const TFormatArg& a : args) {
        switch (a.Kind()) {
            case TFormatArg::TKind::Int:
                s += QStringLiteral(" int %1%2").arg(a.Int()).arg(a.Narrow() ? "n" : "");
                break;
            case TFormatArg::TKind::Float:
                s += " float " + kx::fuzz::Show(a.Float());
                break;
            case TFormatArg::TKind::String:
                s += " \"" + a.String() + "\"";
                break;
        }
    }
    return s;
}

void CheckSingle(const TFormatArg& a) {
    const QString detail = Describe(QStringLiteral("single"), {a});
    switch (a.Kind()) {
        case TFormatArg::TKind::Int:
            KX_FUZZ_CHECK(kx::Format(QStringLiteral("%d"), {a}) == kx::IntToStr(a.Int()), detail);
            if (!a.Narrow()) {
                KX_FUZZ_CHECK(kx::Format(QStringLiteral("%x"), {a}) == kx::IntToHex(a.Int(), 0),
                              detail);
            }
            break;
        case TFormatArg::TKind::Float:
            KX_FUZZ_CHECK(kx::Format(QStringLiteral("%g"), {a}) == kx::FloatToStr(a.Float()),
                          detail);
            break;
        case TFormatArg::TKind::String:
            KX_FUZZ_CHECK(kx::Format(QStringLiteral("%s"), {a}) == a.String(), detail);
            break;
    }
}

void Check(const QString& fmt, const std::vector<TFormatArg>& args) {
    const QString text = FormatArgs(fmt, args);
    KX_FUZZ_CHECK(text == FormatArgs(fmt, args), Describe(fmt, args));
    const qsizetype directives = fmt.count(u'%');
    if (directives == 0) KX_FUZZ_CHECK(text == fmt, Describe(fmt, args) + " -> " + text);
    KX_FUZZ_CHECK(text.size() <= fmt.size() + directives * (kMaxWidth + 400),
                  Describe(fmt, args) + QStringLiteral(" length %1").arg(text.size()));
    for (const TFormatArg& a : args)
        CheckSingle(a);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kx::fuzz::InitQt();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    std::vector<TFormatArg> args;
    for (int n = in.ConsumeIntegralInRange(0, 6); n > 0; --n)
        args.push_back(NextArg(in));
    const QString fmt = QString::fromUtf8(in.ConsumeRemainingBytesAsString()).left(kMaxFormat);
    try {
        Check(fmt, args);
    } catch (const std::exception& e) {
        kx::fuzz::Fail("no exception", __FILE__, __LINE__, Describe(fmt, args) + " " + e.what());
    } catch (...) {
        kx::fuzz::Fail("no exception", __FILE__, __LINE__, Describe(fmt, args));
    }
    return 0;
}
