// The numeric edit: reading entries in every notation, the state colours, limits and
// steps, the value's views, and what the operator's keys do.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>
#include <cmath>
#include <limits>
#include <memory>

#include "common/test_env.h"
#include "kx/entry/numedit.h"
#include "kx/host/formatsettings.h"
#include "kx/host/messagebox.h"

namespace kx {
namespace {

using E = TKxNumEdit;

TEST(NumEditParse, EntriesInEveryNotation) {
    test::ResetEnvironment();
    const TFormatSettings fs = DefaultFormatSettings();
    const struct {
        const char* text;
        E::TEditBase base;
        double value;
        E::TEditBase read;
    } cases[] = {
        {"1.5k", E::ebFloat, 1500.0, E::ebFloat},
        {"k", E::ebFloat, 1000.0, E::ebFloat},
        {"3m", E::ebFloat, 0.003000000142492354, E::ebFloat},
        {"1E3", E::ebFloat, 1000.0, E::ebFloat},
        {"E3", E::ebFloat, 1000.0, E::ebFloat},
        {"2E", E::ebFloat, 1.999999968613499e18, E::ebFloat},
        {"-12.75E-3", E::ebFloat, -0.01275, E::ebFloat},
        {"1e+5", E::ebFloat, 1e5, E::ebFloat},
        {"1,000.5", E::ebFloat, 1000.5, E::ebFloat},
        {"-", E::ebFloat, 0.0, E::ebFloat},
        {"+", E::ebFloat, 0.0, E::ebFloat},
        {"5u", E::ebFloat, 5.0 * double(1e-6f), E::ebFloat},
        {"$ff", E::ebFloat, 255.0, E::ebHex},
        {"$ff", E::ebInt, 255.0, E::ebHex},
        {"&101", E::ebFloat, 5.0, E::ebBin},
        {"%12", E::ebHex, 12.0, E::ebInt},
        {"!1.5", E::ebInt, 1.5, E::ebFloat},
        {"$", E::ebFloat, 0.0, E::ebHex},
        {"2k", E::ebInt, 2000.0, E::ebInt},
        {"3G", E::ebInt, 3e9, E::ebInt},
        {"1,000", E::ebInt, 1000.0, E::ebInt},
        {"-2147483648", E::ebInt, -2147483648.0, E::ebInt},
        {"ff", E::ebHex, 255.0, E::ebHex},
        {"FFFFFFFF", E::ebHex, -1.0, E::ebHex},
        {"101", E::ebBin, 5.0, E::ebBin},
        {"1111111111111111111111111111111111", E::ebBin, -1.0, E::ebBin},
    };
    for (const auto& t : cases) {
        const E::TEntry e = E::Parse(QString::fromUtf8(t.text), t.base, fs);
        EXPECT_TRUE(e.Valid) << t.text;
        EXPECT_EQ(e.Value, t.value) << t.text;
        EXPECT_EQ(e.Base, t.read) << t.text;
    }
    EXPECT_TRUE(E::Parse(QString(), E::ebFloat, fs).Empty);
}

TEST(NumEditParse, OffendingCharactersAreMarked) {
    test::ResetEnvironment();
    const TFormatSettings fs = DefaultFormatSettings();
    const struct {
        const char* text;
        E::TEditBase base;
        int first, last;
    } cases[] = {
        {"2m", E::ebInt, 1, 1},         // a sub-unit letter stays in an integer entry
        {"1.2.3", E::ebFloat, 3, 3},    // the second separator
        {"1.2.3.4", E::ebFloat, 3, 5},  // second and third
        {"12x4", E::ebFloat, 2, 2},
        {"1.x.", E::ebFloat, 2, 3},  // found by the two scans out of order
        {".5.5", E::ebFloat, 2, 2},  // a leading separator counts as the first
        {"--5", E::ebFloat, 1, 1},
        {"1e--5", E::ebFloat, 3, 3},
        {"1e5e3", E::ebFloat, 3, 3},
        {"1.5", E::ebInt, 1, 1},
        {"-1", E::ebHex, 0, 0},  // no signs in hexadecimal
        {"1k", E::ebHex, 1, 1},  // nor letters
        {"2", E::ebBin, 0, 0},
        {"$$ff", E::ebFloat, 1, 1},
        {"1\t", E::ebFloat, 1, 1},
        {"\xd9\xa1\xd9\xa2", E::ebFloat, 0, 1},  // Arabic-Indic digits
        // Allowed characters that make no number: the whole entry after its prefix.
        {".", E::ebFloat, 0, 0},
        {"1e", E::ebFloat, 0, 1},
        {"1e5.5", E::ebFloat, 0, 4},
        {"99999999999", E::ebInt, 0, 10},
        {"$123456789", E::ebFloat, 1, 9},
        {"1e400", E::ebFloat, 0, 4},
        {"1000000E", E::ebFloat, -1, -1},  // 1e24 is a number: valid
    };
    for (const auto& t : cases) {
        const E::TEntry e = E::Parse(QString::fromUtf8(t.text), t.base, fs);
        EXPECT_EQ(e.Valid, t.first < 0) << t.text;
        EXPECT_EQ(e.FirstInvalid, t.first) << t.text;
        EXPECT_EQ(e.LastInvalid, t.last) << t.text;
    }
}

TEST(NumEditParse, SeparatorsComeFromTheFormatSettings) {
    TFormatSettings fs = DefaultFormatSettings();
    fs.DecimalSeparator = u',';
    fs.ThousandSeparator = u'.';
    const E::TEntry e = E::Parse(QStringLiteral("1.000,5k"), E::ebFloat, fs);
    ASSERT_TRUE(e.Valid);
    EXPECT_EQ(e.Value, 1000500.0);
    EXPECT_EQ(E::Parse(QStringLiteral("1,2,3"), E::ebFloat, fs).FirstInvalid, 3);
}

class NumEdit : public ::testing::Test {
  protected:
    void SetUp() override {
        test::ResetEnvironment();
        SetBeepHook([this] { ++beeps_; });
        e_ = std::make_unique<TKxNumEdit>(&form_);
        QObject::connect(e_.get(), &TKxNumEdit::OnValueChanged, [this] { ++valueChanged_; });
        QObject::connect(e_.get(), &TKxNumEdit::OnLimit, [this] { ++limits_; });
        QObject::connect(e_.get(), &TKxNumEdit::OnChange, [this] { ++changes_; });
        e_->Loaded();
        e_->SetValue(1.0);  // a value shown: later typing waits for confirmation
        valueChanged_ = 0;
    }
    void TearDown() override { SetBeepHook(nullptr); }
    void key(int k, const QString& text = QString()) {
        QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier, text);
        QCoreApplication::sendEvent(e_.get(), &press);
    }
    void type(const QString& s) {
        for (QChar c : s)
            key(0, QString(c));
    }
    void replaceBy(const QString& s) {
        e_->selectAll();
        type(s);
    }
    QRgb base() const { return e_->palette().color(QPalette::Base).rgb() & 0xFFFFFFu; }
    QWidget form_;
    std::unique_ptr<TKxNumEdit> e_;
    int beeps_ = 0, valueChanged_ = 0, limits_ = 0, changes_ = 0;
};

TEST_F(NumEdit, TypedEntriesAreShownInTheEditsNotationOnEnter) {
    const struct {
        E::TEditBase base;
        const char* typed;
        double value;
        const char* shown;
    } cases[] = {
        {E::ebFloat, "1.5k", 1500.0, "1500"}, {E::ebFloat, "3m", 0.003000000142492354, "0"},
        {E::ebFloat, "$ff", 255.0, "255"},    {E::ebHex, "%255", 255.0, "FF"},
        {E::ebInt, "&101", 5.0, "5"},         {E::ebBin, "$f", 15.0, "1111"},
        {E::ebInt, "2k", 2000.0, "2000"},     {E::ebFloat, "E3", 1000.0, "1000"},
    };
    for (const auto& t : cases) {
        e_->SetEditBase(t.base);
        replaceBy(QString::fromUtf8(t.typed));
        EXPECT_EQ(e_->State(), E::esEditing) << t.typed;
        key(Qt::Key_Return);
        EXPECT_EQ(e_->Value(), t.value) << t.typed;
        EXPECT_EQ(e_->text(), QString::fromUtf8(t.shown)) << t.typed;
        EXPECT_EQ(e_->State(), E::esNormal) << t.typed;
        EXPECT_EQ(e_->LastAppliedText(), e_->text()) << t.typed;
    }
    EXPECT_EQ(beeps_, 0);
}

TEST_F(NumEdit, AnErrorKeepsTheTextAndSelectsTheFault) {
    e_->SetEditBase(E::ebInt);
    const QRgb normal = base();
    replaceBy(QStringLiteral("2m"));
    EXPECT_EQ(e_->State(), E::esError);
    EXPECT_EQ(e_->text(), QStringLiteral("2m"));
    EXPECT_EQ(e_->selectedText(), QStringLiteral("m"));
    EXPECT_EQ(base(), 0xFF0000u);
    EXPECT_EQ(beeps_, 1);
    // Enter does not accept it; the value stays.
    key(Qt::Key_Return);
    EXPECT_EQ(e_->Value(), 1.0);
    EXPECT_EQ(e_->text(), QStringLiteral("2m"));
    // Escape brings the value back.
    key(Qt::Key_Escape);
    EXPECT_EQ(e_->text(), QStringLiteral("1"));
    EXPECT_EQ(e_->State(), E::esNormal);
    EXPECT_EQ(base(), normal);
    e_->SetEditBase(E::ebFloat);
    // The second separator is selected as it is typed, so the next key replaces it.
    replaceBy(QStringLiteral("1.2."));
    EXPECT_EQ(e_->selectionStart(), 3);
    EXPECT_EQ(e_->selectedText(), QStringLiteral("."));
    type(QStringLiteral("3"));
    EXPECT_EQ(e_->text(), QStringLiteral("1.23"));
    EXPECT_EQ(e_->State(), E::esEditing);
}

TEST_F(NumEdit, StatesAndTheirColours) {
    const struct {
        const char* step;
        std::function<void()> act;
        E::TNumEditState state;
        QRgb colour;
    } steps[] = {
        {"typing", [&] { replaceBy(QStringLiteral("12")); }, E::esEditing, 0x00FF00u},
        {"more typing", [&] { type(QStringLiteral("x")); }, E::esError, 0xFF0000u},
        {"repaired", [&] { key(Qt::Key_Backspace); }, E::esEditing, 0x00FF00u},
        {"confirmed", [&] { key(Qt::Key_Return); }, E::esNormal, 0xFFFFFFu},
        {"emptied",
         [&] {
             replaceBy(QString());
             key(Qt::Key_Backspace);
         },
         E::esEditing, 0x00FF00u},
        {"left",
         [&] {
             QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
             QCoreApplication::sendEvent(e_.get(), &out);
         },
         E::esNormal, 0xFFFFFFu},
    };
    for (const auto& s : steps) {
        s.act();
        EXPECT_EQ(e_->State(), s.state) << s.step;
        EXPECT_EQ(base(), s.colour) << s.step;
    }
    EXPECT_EQ(e_->text(), QStringLiteral("0"));  // an empty entry that is left reads 0
    EXPECT_EQ(e_->Value(), 0.0);
}

TEST_F(NumEdit, LimitsStopTheStepsAndReportOnce) {
    e_->SetOptions(E::NumEditOption(E::eoLimitMax) | E::NumEditOption(E::eoLimitMin));
    e_->SetMaxValue(10.0);
    e_->SetMinValue(-10.0);
    e_->SetIncrement(4.0f);
    replaceBy(QStringLiteral("10"));
    key(Qt::Key_Return);
    EXPECT_TRUE(e_->AtUpperLimit());
    EXPECT_EQ(limits_, 1);
    key(Qt::Key_Up);  // at the limit the key does nothing
    EXPECT_EQ(e_->Value(), 10.0);
    EXPECT_EQ(beeps_, 0);
    e_->UpClick();  // a direct step beeps
    EXPECT_EQ(beeps_, 1);
    key(Qt::Key_Down);
    EXPECT_EQ(e_->Value(), 6.0);
    EXPECT_FALSE(e_->AtUpperLimit());
    EXPECT_EQ(limits_, 2);
    // A typed value beyond the limit is limited, never accepted as typed.
    replaceBy(QStringLiteral("-1k"));
    key(Qt::Key_Return);
    EXPECT_EQ(e_->Value(), -10.0);
    EXPECT_TRUE(e_->AtLowerLimit());
    EXPECT_EQ(e_->text(), QStringLiteral("-10"));
}

TEST_F(NumEdit, StepsAddOrMultiply) {
    const struct {
        bool multiply;
        E::TEditBase base;
        float increment;
        double from, up, down;
    } cases[] = {
        {false, E::ebFloat, 0.5f, 1.0, 1.5, 0.5},
        {true, E::ebFloat, 10.0f, 2.0, 20.0, 0.2},
        {true, E::ebFloat, 10.0f, 0.0, 10.0, -10.0},  // 0 cannot be multiplied: added
        {true, E::ebInt, 10.0f, 2.0, 12.0, -8.0},     // only floating point multiplies
    };
    for (const auto& t : cases) {
        e_->SetEditBase(t.base);
        e_->SetOptions(t.multiply ? E::NumEditOption(E::eoMultiply) : 0);
        e_->SetIncrement(t.increment);
        e_->SetValue(t.from);
        const int changes = changes_;
        key(Qt::Key_Up);
        EXPECT_DOUBLE_EQ(e_->Value(), t.up) << t.from;
        e_->SetValue(t.from);
        key(Qt::Key_Down);
        EXPECT_DOUBLE_EQ(e_->Value(), t.down) << t.from;
        EXPECT_EQ(changes_, changes + 2);
    }
    e_->setReadOnly(true);
    e_->UpClick();
    EXPECT_EQ(beeps_, 1);
}

TEST_F(NumEdit, TheValuesViews) {
    const struct {
        double value;
        int32_t asInt;
        float asSingle;
        const char* hex;
        int digitsHex;
    } cases[] = {
        {2.5, 2, 2.5f, "2", 0},  // half to even
        {3.5, 4, 3.5f, "0004", 4},
        {-1.0, -1, -1.0f, "FFFFFFFF", 0},
        {255.0, 255, 255.0f, "00FF", 4},
        {3e9, 2147483647, 3e9f, "7FFFFFFF", 0},
        {-3e9, -2147483647, -3e9f, "80000001", 0},
        {1e40, 2147483647, 3.4e38f, "7FFFFFFF", 0},
        {-1e39, -2147483647, -std::numeric_limits<float>::infinity(), "80000001", 0},
        {-1e46, -2147483647, -std::numeric_limits<float>::infinity(), "80000001", 0},
    };
    for (const auto& t : cases) {
        e_->SetDigitsHex(t.digitsHex);
        e_->SetValue(t.value);
        EXPECT_EQ(e_->ValueAsInt(), t.asInt) << t.value;
        EXPECT_EQ(e_->ValueAsSingle(), t.asSingle) << t.value;
        EXPECT_EQ(e_->ValueAsHex(), QString::fromLatin1(t.hex)) << t.value;
    }
    e_->SetValue(5.0);
    EXPECT_EQ(e_->ValueAsBool(), QStringLiteral("101"));
    e_->SetEditBase(E::ebInt);
    e_->SetValue(3e9);
    EXPECT_EQ(e_->text(), QStringLiteral("2147483647"));
    EXPECT_EQ(e_->Value(), 2147483647.0);
    // A NaN is ignored; an infinity is clamped to the notation's range.
    e_->SetValue(std::nan(""));
    EXPECT_EQ(e_->Value(), 2147483647.0);
    e_->SetValue(-HUGE_VAL);
    EXPECT_EQ(e_->Value(), -2147483647.0);
}

TEST_F(NumEdit, ViewSettersGoThroughTheEntry) {
    e_->SetValueAsHex(QStringLiteral("1F"));
    EXPECT_EQ(e_->Value(), 31.0);
    EXPECT_EQ(e_->text(), QStringLiteral("31"));
    e_->SetValueAsBool(QStringLiteral("110"));
    EXPECT_EQ(e_->Value(), 6.0);
    e_->SetValueAsInt(-7);
    EXPECT_EQ(e_->Value(), -7.0);
    e_->SetValueAsSingle(0.25f);
    EXPECT_EQ(e_->Value(), 0.25);
    e_->SetValueAsHex(QStringLiteral("xyz"));  // refused, shown as an error
    EXPECT_EQ(e_->State(), E::esError);
    EXPECT_EQ(e_->Value(), 0.25);
}

TEST_F(NumEdit, ValueChangedFiresForNewTextsOnlyAndNotWhileLoading) {
    e_->SetValue(2.0);
    EXPECT_EQ(valueChanged_, 1);
    e_->SetValue(2.01);  // shows "2" again: no new text
    EXPECT_EQ(valueChanged_, 1);
    e_->SetFormatStr(QStringLiteral("0.00"));
    EXPECT_EQ(e_->text(), QStringLiteral("2.01"));
    EXPECT_EQ(valueChanged_, 2);
    TKxNumEdit loading(&form_);
    int fired = 0;
    QObject::connect(&loading, &TKxNumEdit::OnValueChanged, [&] { ++fired; });
    loading.SetValue(5.0);
    EXPECT_EQ(loading.text(), QStringLiteral("5"));
    EXPECT_EQ(fired, 0);
    loading.Loaded();
    loading.SetValue(6.0);
    EXPECT_EQ(fired, 1);
}

TEST_F(NumEdit, TheFirstEntryBeforeAnyValueIsAppliedAtOnce) {
    TKxNumEdit fresh(&form_);
    fresh.Loaded();
    fresh.selectAll();
    QKeyEvent seven(QEvent::KeyPress, Qt::Key_7, Qt::NoModifier, QStringLiteral("7"));
    QCoreApplication::sendEvent(&fresh, &seven);
    EXPECT_EQ(fresh.Value(), 7.0);
    EXPECT_EQ(fresh.State(), E::esNormal);
}

TEST_F(NumEdit, ADisabledEditorRefusesKeys) {
    e_->SetEditorEnabled(false);
    const QString before = e_->text();
    type(QStringLiteral("12"));
    key(Qt::Key_Backspace, QStringLiteral("\b"));
    key(Qt::Key_Delete);
    EXPECT_EQ(e_->text(), before);
    EXPECT_EQ(beeps_, 4);
    e_->SetIncrement(1.0f);
    key(Qt::Key_Up);  // steps still work
    EXPECT_EQ(e_->Value(), 2.0);
}

TEST_F(NumEdit, EditBaseShowsTheValueInItsNotation) {
    e_->SetValue(10.0);
    const struct {
        E::TEditBase base;
        const char* shown;
    } cases[] = {{E::ebHex, "A"}, {E::ebBin, "1010"}, {E::ebInt, "10"}, {E::ebFloat, "10"}};
    for (const auto& t : cases) {
        e_->SetEditBase(t.base);
        EXPECT_EQ(e_->text(), QString::fromLatin1(t.shown));
        EXPECT_EQ(e_->LastAppliedText(), e_->text());
        EXPECT_EQ(e_->State(), E::esNormal);
    }
    e_->SetEditBase(E::TEditBase(9));
    EXPECT_EQ(e_->EditBase(), E::ebFloat);
}

TEST(NumEditDefaults, ANewEditShowsZeroInItsDefaultColour) {
    test::ResetEnvironment();
    TKxNumEdit e;
    EXPECT_EQ(e.text(), QStringLiteral("0"));
    EXPECT_EQ(e.LastAppliedText(), QStringLiteral("0"));
    EXPECT_EQ(e.EditBase(), E::ebFloat);
    EXPECT_EQ(e.FormatStr(), QStringLiteral("#0.#"));
    EXPECT_EQ(e.ColorError(), clRed);
    EXPECT_EQ(e.ColorEditing(), clLime);
    EXPECT_TRUE(e.Loading());
    EXPECT_TRUE(e.EditorEnabled());
}

TEST_F(NumEdit, ColourSettersRecolourTheCurrentState) {
    e_->SetColorDefault(clAqua);
    EXPECT_EQ(base(), QRgb(0x00FFFF));
    replaceBy(QStringLiteral("7"));
    e_->SetColorEditing(clYellow);
    EXPECT_EQ(base(), QRgb(0xFFFF00));
    type(QStringLiteral("x"));
    e_->SetColorError(clFuchsia);
    EXPECT_EQ(base(), QRgb(0xFF00FF));
}

TEST_F(NumEdit, SettingTheSameOrNoValueLeavesTheEntryAndTheLimitsAlone) {
    e_->SetOptions(E::NumEditOption(E::eoLimitMax));
    e_->SetMaxValue(1.0);
    e_->SetValue(5.0);  // limited to 1: at the limit
    ASSERT_TRUE(e_->AtUpperLimit());
    const int limits = limits_;
    e_->SetValue(std::nan(""));
    EXPECT_TRUE(e_->AtUpperLimit());
    EXPECT_EQ(limits_, limits);
    // An entry being typed survives setting the value it already has.
    replaceBy(QStringLiteral("12"));
    e_->SetValue(e_->Value());
    EXPECT_EQ(e_->text(), QStringLiteral("12"));
    EXPECT_EQ(e_->State(), E::esEditing);
}

TEST_F(NumEdit, KeysItHandlesDoNotReachItsParent) {
    struct Parent : QWidget {
        int keys = 0;
        void keyPressEvent(QKeyEvent* e) override {
            ++keys;
            e->accept();
        }
    } parent;
    TKxNumEdit e(&parent);
    e.Loaded();
    QKeyEvent digit(QEvent::KeyPress, Qt::Key_5, Qt::NoModifier, QStringLiteral("5"));
    QCoreApplication::sendEvent(&e, &digit);
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QCoreApplication::sendEvent(&e, &up);
    EXPECT_EQ(parent.keys, 0);
}

TEST_F(NumEdit, AnErrorInAShownEditTakesTheFocus) {
    QWidget window;
    QLineEdit other(&window);
    TKxNumEdit e(&window);
    e.move(0, 40);
    e.Loaded();
    window.show();
    other.setFocus();
    e.setText(QStringLiteral("1x"));
    EXPECT_FALSE(e.CheckEdit(false));
    EXPECT_EQ(window.focusWidget(), &e);
    EXPECT_EQ(e.selectedText(), QStringLiteral("x"));
    // At design time the form designer keeps the focus where it is.
    other.setFocus();
    e.SetDesigning(true);
    e.setText(QStringLiteral("2y"));
    EXPECT_FALSE(e.CheckEdit(false));
    EXPECT_EQ(window.focusWidget(), &other);
}

// Two edits in error: the one that takes the focus keeps it, the one that loses it shows
// its own error without taking the focus back (they used to pass it to and fro until the
// stack ran out).
TEST_F(NumEdit, TwoEditsInErrorDoNotFightForTheFocus) {
    QWidget window;
    TKxNumEdit first(&window), second(&window);
    second.move(0, 40);
    first.Loaded();
    second.Loaded();
    window.show();
    window.activateWindow();
    QCoreApplication::processEvents();
    ASSERT_TRUE(window.isActiveWindow());  // focus events flow only in the active window
    second.setFocus();
    second.setText(QStringLiteral("2y"));
    first.setText(QStringLiteral("1x"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&first, &enter);
    EXPECT_EQ(window.focusWidget(), &first);
    EXPECT_EQ(first.State(), E::esError);
    EXPECT_EQ(first.selectedText(), QStringLiteral("x"));
    EXPECT_EQ(second.State(), E::esError);
    EXPECT_EQ(second.selectedText(), QStringLiteral("y"));
}

}  // namespace
}  // namespace kx
