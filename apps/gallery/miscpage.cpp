#include "miscpage.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>

#include "kx/entry/numspin.h"
#include "kx/framework/spinbutton.h"
#include "kx/indicators/rmeter.h"

namespace kxgallery {
namespace {

using namespace kx;

QGroupBox* section(const QString& title, QLayout* layout) {
    auto* box = new QGroupBox(title);
    box->setLayout(layout);
    return box;
}

}  // namespace

MiscPage::MiscPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(0), parent), time_(startTime) {
    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setSpacing(12);
    grid->addWidget(notationsBox(), 0, 0);
    grid->addWidget(limitBox(), 0, 1);
    grid->addWidget(countBox(), 1, 0);
    grid->addWidget(HintLabel(QStringLiteral("Clocks, operating-hour counters, labels, bevels, "
                                             "panels and gradients will join them here.")),
                    1, 1, Qt::AlignTop);
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(2, 1);
    SetScrollContent(content);
}

QWidget* MiscPage::notationsBox() {
    auto* form = new QFormLayout;
    const struct {
        const char* label;
        TKxNumEdit::TEditBase base;
    } rows[] = {{"Floating point", TKxNumEdit::ebFloat},
                {"Integer", TKxNumEdit::ebInt},
                {"Hexadecimal", TKxNumEdit::ebHex},
                {"Binary", TKxNumEdit::ebBin}};
    for (size_t i = 0; i < edits_.size(); ++i) {
        auto* edit = new TKxNumEdit;
        edit->SetEditBase(rows[i].base);
        edit->SetFormatStr(QStringLiteral("#,##0.0##"));
        edit->SetDigitsHex(4);
        edit->SetIncrement(1.0f);
        edit->setMinimumWidth(220);
        form->addRow(QString::fromLatin1(rows[i].label), edit);
        edits_[i] = edit;
    }
    // One value in four notations: an accepted entry in one shows in all.
    for (TKxNumEdit* from : edits_)
        connect(from, &TKxNumEdit::OnValueChanged, this, [this, from] {
            for (TKxNumEdit* to : edits_)
                if (to != from) to->SetValue(from->Value());
        });
    for (TKxNumEdit* e : edits_)  // still loading: they do not tell each other yet
        e->SetValue(1500.0);
    form->addRow(HintLabel(QStringLiteral(
        "Type 1.5k, 3m, -12.75E-3, $ff, &101 or %42 in any of them: Enter or Tab accepts, "
        "Esc undoes, the arrow keys step. A mistake turns red and is selected.")));
    return section(QStringLiteral("One value in four notations"), form);
}

QWidget* MiscPage::limitBox() {
    auto* row = new QHBoxLayout;
    limit_ = new TKxNumSpin;
    limit_->SetOptions(TKxNumEdit::NumEditOption(TKxNumEdit::eoLimitMin) |
                       TKxNumEdit::NumEditOption(TKxNumEdit::eoLimitMax));
    limit_->SetMinValue(10.0);
    limit_->SetMaxValue(95.0);
    limit_->SetIncrement(5.0f);
    limit_->setFixedWidth(90);
    tank_ = new TKx180Meter;
    TSignalSettings& sig = *tank_->SignalSettings();
    sig.SetName1(QStringLiteral("Tank level"));
    sig.SetName2(QStringLiteral("LT-230"));
    sig.SetValueUnit(QStringLiteral("%"));
    connect(limit_, &TKxNumEdit::OnValueChanged, this,
            [this] { tank_->SetLimitUpper(float(limit_->Value())); });
    limit_->SetValue(80.0);  // still loading: no event, so the meter is told here
    tank_->SetLimitUpper(80.0f);
    auto* column = new QVBoxLayout;
    column->addWidget(new QLabel(QStringLiteral("High limit (%)")));
    column->addWidget(limit_);
    column->addWidget(
        HintLabel(QStringLiteral("10 to 95 in steps of 5: the buttons stop at the "
                                 "limits and while an entry waits.")));
    column->addStretch(1);
    row->addLayout(column);
    row->addWidget(tank_, 0, Qt::AlignTop);
    return section(QStringLiteral("Numeric spin setting a meter's limit"), row);
}

QWidget* MiscPage::countBox() {
    auto* row = new QHBoxLayout;
    spin_ = new TKxSpinButton;
    spin_->SetBounds(0, 0, 17, 34);
    spin_->setFixedSize(17, 34);
    connect(spin_, &TKxSpinButton::OnUpClick, this, [this] { setCount(count_ + 1); });
    connect(spin_, &TKxSpinButton::OnDownClick, this, [this] { setCount(count_ - 1); });
    repeat_ = new TKxTimerSpeedBtn;
    repeat_->SetArrowGlyph(TKxTimerSpeedBtn::agUp);
    repeat_->setFixedSize(34, 34);
    connect(repeat_, &QAbstractButton::clicked, this, [this] { setCount(count_ + 10); });
    countLabel_ = new QLabel;
    countLabel_->setMinimumWidth(60);
    countLabel_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setCount(0);
    row->addWidget(countLabel_);
    row->addWidget(spin_);
    row->addSpacing(16);
    row->addWidget(repeat_);
    row->addWidget(HintLabel(QStringLiteral("Hold a button: it repeats after half a second, ten "
                                            "times a second. The right one adds 10.")),
                   1);
    return section(QStringLiteral("Spin button and repeating speed button"), row);
}

void MiscPage::setCount(int count) {
    count_ = count;
    countLabel_->setText(QString::number(count));
}

void MiscPage::Step(double seconds) {
    time_ += seconds;
    // The tank fills and empties over a minute, now and then above the limit.
    tank_->SetValue(float(55.0 + 40.0 * std::sin(time_ * 2.0 * M_PI / 60.0)));
}

}  // namespace kxgallery
