// Random and mutated entries through the numeric edit's reader and through the edit
// itself, bounded in time: nothing crashes, every verdict is consistent, nothing typed is
// lost, and no value outside the limits is ever accepted.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QWidget>
#include <cmath>
#include <random>

#include "common/test_env.h"
#include "kx/entry/numedit.h"
#include "kx/host/formatsettings.h"
#include "kx/host/messagebox.h"

namespace kx {
namespace {

using E = TKxNumEdit;

class EntrySource {
  public:
    // Mostly mutated good entries, a third short random ones, now and then a long random
    // one or a long run of prefixes.
    QString Next() {
        const size_t kind = pick(64);
        if (kind == 0) return random(pick(300));
        if (kind == 1) return QString(int(pick(20000)), QChar(u"$%&!"[pick(4)])) + random(pick(4));
        if (kind < 21) return random(pick(12));
        return mutated(seeds_[pick(std::size(seeds_))]);
    }

  private:
    size_t pick(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng_); }
    QChar character() {
        static const QString alphabet =
            QStringLiteral("0123456789abcdefABCDEF+-.,eE$%&!PTGMkmunpfa \t\x01\u0663\u00a0\uffff");
        return alphabet[qsizetype(pick(size_t(alphabet.size())))];
    }
    QString random(size_t n) {
        QString s;
        for (size_t i = 0; i < n; ++i)
            s += character();
        return s;
    }
    QString mutated(const char* seed) {
        QString s = QString::fromLatin1(seed);
        for (size_t k = pick(4) + 1; k > 0; --k) {
            const qsizetype at = qsizetype(pick(size_t(s.size()) + 1));
            switch (pick(3)) {
                case 0:
                    s.insert(at, character());
                    break;
                case 1:
                    if (at < s.size()) s.remove(at, 1);
                    break;
                default:
                    if (at < s.size()) s[at] = character();
            }
        }
        return s;
    }
    std::mt19937_64 rng_{20261125};
    const char* seeds_[12] = {"1.5k", "$ff",   "&101",      "-12.75E-3",  "2E", "E3",
                              "%42",  "!1e-5", "1,000.25m", "2147483647", "3G", "-"};
};

void CheckVerdict(const QString& s, E::TEditBase base, const E::TEntry& e) {
    ASSERT_EQ(e.Empty, s.isEmpty()) << s.toStdString();
    if (e.Valid) {
        ASSERT_EQ(e.FirstInvalid, -1);
        ASSERT_EQ(e.LastInvalid, -1);
        ASSERT_TRUE(std::isfinite(e.Value)) << s.toStdString();
        if (e.Base != E::ebFloat) {
            ASSERT_EQ(e.Value, std::trunc(e.Value)) << s.toStdString();
        }
        if (e.Base == E::ebBin || e.Base == E::ebHex) {
            ASSERT_TRUE(e.Value >= -2147483648.0 && e.Value <= 2147483647.0);
        }
    } else {
        ASSERT_GE(e.FirstInvalid, 0) << s.toStdString() << " " << base;
        ASSERT_LE(e.FirstInvalid, e.LastInvalid);
        ASSERT_LT(e.LastInvalid, s.size());
    }
}

TEST(NumEditFuzz, RandomEntriesGetConsistentVerdictsAndRespectTheLimits) {
    test::ResetEnvironment();
    int beeps = 0;
    SetBeepHook([&] { ++beeps; });
    QWidget form;
    E edit(&form);
    edit.Loaded();
    edit.SetOptions(E::NumEditOption(E::eoLimitMin) | E::NumEditOption(E::eoLimitMax));
    edit.SetMinValue(-100.0);
    edit.SetMaxValue(100.0);
    edit.SetValue(1.0);
    EntrySource source;
    const TFormatSettings& fs = FormatSettings();
    QElapsedTimer clock;
    clock.start();
    int entries = 0;
    for (; entries < 300000 && clock.elapsed() < 5000; ++entries) {
        const QString s = source.Next();
        for (E::TEditBase base : {E::ebBin, E::ebHex, E::ebFloat, E::ebInt}) {
            ASSERT_NO_FATAL_FAILURE(CheckVerdict(s, base, E::Parse(s, base, fs)));
        }
        if (entries % 8 != 0 || s.size() > 400) continue;
        edit.SetEditBase(E::TEditBase(entries / 8 % 4));
        const double before = edit.Value();
        edit.setText(s);
        if (!edit.CheckEdit(true)) {
            // Refused: what was typed stays, and so does the value.
            ASSERT_EQ(edit.text(), s);
            ASSERT_EQ(edit.State(), E::esError);
            ASSERT_EQ(edit.Value(), before);
        } else if (!s.isEmpty()) {
            ASSERT_GE(edit.Value(), -100.0) << s.toStdString();
            ASSERT_LE(edit.Value(), 100.0) << s.toStdString();
            ASSERT_EQ(edit.State(), E::esNormal);
        }
    }
    SetBeepHook(nullptr);
    EXPECT_GT(entries, 1000);
    RecordProperty("entries", entries);
}

}  // namespace
}  // namespace kx
