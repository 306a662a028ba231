#include "binarypage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>

#include "kx/binary/colbitbtn.h"
#include "kx/binary/kxled.h"
#include "kx/binary/leverswitch.h"
#include "kx/binary/rockerswitch.h"
#include "plantcolors.h"

namespace kxgallery {
namespace {

using namespace kx;

constexpr double kMachineCycle = 24.0;  // seconds of one machine cycle

// The machine's status bits: caption, lamp colour, blinks when set.
struct StatusBit {
    const char* caption;
    TColor color;
    bool flashing;
};
const StatusBit kStatusBits[16] = {
    {"Power", kNormal, false},        {"Ready", kNormal, false},    {"Running", kNormal, false},
    {"Heating", kWarning, false},     {"Cooling", kCold, false},    {"Pump A", kNormal, false},
    {"Pump B", kNormal, false},       {"Valve open", kCold, false}, {"Door open", kWarning, true},
    {"Low oil", kWarning, false},     {"Overtemp", kAlarm, true},   {"Fault", kAlarm, true},
    {"Maintenance", kWarning, false}, {"Remote", kCold, false},     {"Local", kCold, false},
    {"E-stop", kAlarm, true},
};

TKxLED* lamp(const QString& caption, TColor on, QWidget* parent = nullptr) {
    auto* led = new TKxLED(parent);
    led->SetCaption(caption);
    led->LED()->SetColorOn(on);
    return led;
}

QGroupBox* section(const QString& title, QLayout* layout) {
    auto* box = new QGroupBox(title);
    box->setLayout(layout);
    return box;
}

bool within(double t, double from, double to) {
    return t >= from && t < to;
}

}  // namespace

BinaryPage::BinaryPage(double startTime, QWidget* parent)
    : GalleryPage(PalettePageNames().at(3), parent), time_(startTime) {
    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins(12, 12, 12, 12);
    grid->setSpacing(10);
    grid->addWidget(statusSection(), 0, 0, 1, 2);
    grid->addWidget(shapeSection(), 1, 0);
    grid->addWidget(switchSection(), 1, 1);
    grid->addWidget(buttonSection(), 2, 0, 1, 2);
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(2, 1);
    SetScrollContent(content);
    // A group shares its word within one window: set it once the buttons are in it.
    editorFirst_->SetStatusInt(0x5A);
    Step(0.0);
}

int32_t BinaryPage::MachineWord(double time) {
    const double t = std::fmod(std::max(time, 0.0), kMachineCycle);
    const bool running = within(t, 2.0, 17.0);
    const bool remote = std::fmod(std::max(time, 0.0), 2 * kMachineCycle) < kMachineCycle;
    const bool bits[16] = {
        true,
        t >= 1.0 && !within(t, 12.5, 14.0),
        running,
        running && std::fmod(t, 6.0) < 3.0,
        running && std::fmod(t, 6.0) >= 3.0,
        running && std::fmod(t, 4.0) < 2.5,
        running && std::fmod(t, 4.0) >= 1.5,
        std::fmod(t, 3.0) < 1.5,
        within(t, 19.0, 21.0),
        within(t, 9.0, 13.0),
        within(t, 11.0, 13.5),
        within(t, 12.5, 14.0),
        within(t, 17.0, 24.0),
        remote,
        !remote,
        within(t, 22.5, 23.5),
    };
    uint32_t word = 0;
    for (int i = 0; i < 16; ++i)
        if (bits[i]) word |= 1u << i;
    return int32_t(word);
}

QString BinaryPage::WordText() const {
    const uint32_t w = uint32_t(statusLeds_.front()->StatusInt());
    return QStringLiteral("Status word 0x%1  =  %2")
        .arg(w, 4, 16, QLatin1Char('0'))
        .arg(w, 16, 2, QLatin1Char('0'));
}

void BinaryPage::Step(double seconds) {
    time_ += seconds;
    // One word for the whole group: the LEDs pass it on to each other.
    statusLeds_.front()->SetStatusInt(MachineWord(time_));
    wordLabel_->setText(WordText());
}

QWidget* BinaryPage::statusSection() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    for (int i = 0; i < 16; ++i) {
        auto* led = lamp(QString::fromLatin1(kStatusBits[i].caption), kStatusBits[i].color);
        led->SetStatusBit(i);
        led->SetGroupIndex(1);
        led->SetFlashing(kStatusBits[i].flashing);
        led->SetFrequency(ff2Hz);
        led->setFixedSize(112, 22);
        led->setToolTip(QStringLiteral("Bit %1").arg(i));
        grid->addWidget(led, i / 8, i % 8);
        statusLeds_.push_back(led);
    }
    wordLabel_ = new QLabel;
    wordLabel_->setObjectName(QStringLiteral("statusWord"));
    wordLabel_->setFont(QFont(QStringLiteral("Liberation Mono"), 10));
    grid->addWidget(wordLabel_, 2, 0, 1, 8);
    return section(QStringLiteral("Machine status word: 16 LEDs in one group (GroupIndex 1)"),
                   grid);
}

QWidget* BinaryPage::shapeSection() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    const char* shapes[8] = {"sRound",     "sArrowLeft", "sArrowRight",  "sArrowUp",
                             "sArrowDown", "sRectangle", "sDiamondLeft", "sDiamondRight"};
    for (int i = 0; i < 8; ++i) {
        auto* led = lamp(QString::fromLatin1(shapes[i]), i % 2 ? kWarning : kNormal);
        led->LED()->SetShape(TLEDShape(i));
        led->LED()->SetWidth(i == 5 ? 20 : 14);
        led->SetChecked(i != 7);
        led->setFixedSize(120, 22);
        grid->addWidget(led, i / 2, i % 2);
    }
    const struct {
        TKxLED::TLEDPos pos;
        const char* caption;
    } positions[] = {{lpLeft, "lpLeft|caption right"},
                     {lpRight, "lpRight|caption left"},
                     {lpTop, "lpTop"},
                     {lpBottom, "lpBottom"}};
    for (int i = 0; i < 4; ++i) {
        auto* led = lamp(QString::fromLatin1(positions[i].caption), kNormal);
        led->SetLED_Position(positions[i].pos);
        led->SetChecked(true);
        led->setFixedSize(120, 38);
        grid->addWidget(led, 4 + i / 2, i % 2);
    }
    const char* rates[5] = {"8 Hz", "4 Hz", "2 Hz", "1 Hz", "0.5 Hz"};
    auto* blinkRow = new QHBoxLayout;
    for (int i = 0; i < 5; ++i) {
        auto* led = lamp(QString::fromLatin1(rates[i]), kAlarm);
        led->SetLED_Position(lpTop);
        led->SetFrequency(TFlashFreq(i));
        led->SetFlashing(true);
        led->SetChecked(true);
        led->setFixedSize(48, 34);
        blinkRow->addWidget(led);
    }
    blinkRow->addStretch(1);
    grid->addLayout(blinkRow, 6, 0, 1, 2);
    return section(QStringLiteral("Shapes, caption positions, blink frequencies"), grid);
}

QWidget* BinaryPage::buttonSection() {
    auto* column = new QVBoxLayout;
    auto* radio = new QHBoxLayout;
    const struct {
        const char* caption;
        TColor color;
    } modes[] = {{"Auto", kNormal}, {"Manual", kWarning}, {"Service", kCold}, {"Off", kAlarm}};
    for (int i = 0; i < 4; ++i) {
        auto* b = new TKxColBitBtn;
        b->SetCaption(QString::fromLatin1(modes[i].caption));
        b->SetColorOn(modes[i].color);
        b->SetStatusBit(i);
        b->SetGroupIndex(2);
        b->SetMode(mRadioButton);
        b->setFixedSize(80, 28);
        radio->addWidget(b);
    }
    radio->addSpacing(24);
    auto* horn = new TKxColBitBtn;
    horn->SetCaption(QStringLiteral("Horn"));
    horn->SetColorOn(kWarning);
    horn->SetMode(mButton);
    horn->setFixedSize(80, 28);
    auto* hornLamp = lamp(QStringLiteral("Horn sounding"), kWarning);
    hornLamp->SetFlashing(true);
    hornLamp->SetFrequency(ff4Hz);
    hornLamp->setFixedSize(120, 22);
    QObject::connect(horn, &TKxBinGControl::OnStatusChanged, hornLamp,
                     [horn, hornLamp] { hornLamp->SetChecked(horn->Checked()); });
    radio->addWidget(horn);
    radio->addWidget(hornLamp);
    radio->addStretch(1);
    column->addWidget(new QLabel(QStringLiteral(
        "Operating mode: a radio group (mRadioButton, GroupIndex 2); Horn: momentary (mButton)")));
    column->addLayout(radio);

    auto* editor = new QHBoxLayout;
    editor->setSpacing(2);
    editorLabel_ = new QLabel;
    editorLabel_->setObjectName(QStringLiteral("editorWord"));
    for (int i = 7; i >= 0; --i) {
        auto* b = new TKxColBitBtn;
        b->SetCaption(QString::number(i));
        b->SetColorOn(kCold);
        b->SetStatusBit(i);
        b->SetGroupIndex(3);
        b->setFixedSize(30, 28);
        editor->addWidget(b);
        QObject::connect(b, &TKxBinGControl::OnStatusIntChanged, this, [this, b] {
            const uint32_t w = uint32_t(b->StatusInt());
            editorLabel_->setText(QStringLiteral("Setpoint register 0x%1 = %2")
                                      .arg(w, 2, 16, QLatin1Char('0'))
                                      .arg(w));
        });
        if (i == 0) editorFirst_ = b;
    }
    editor->addSpacing(12);
    editor->addWidget(editorLabel_);
    editor->addStretch(1);
    column->addWidget(
        new QLabel(QStringLiteral("Bit editor: eight latching buttons (mSwitch, GroupIndex 3)")));
    column->addLayout(editor);
    return section(QStringLiteral("Colour bit buttons"), column);
}

QWidget* BinaryPage::switchSection() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    const struct {
        bool rocker;
        bool vertical;
        const char* caption;
        const char* lampCaption;
        TColor color;
    } kinds[] = {{true, true, "Main", "Mains on", kNormal},
                 {true, false, "Heater", "Heater on", kAlarm},
                 {false, true, "Pump", "Pump running", kNormal},
                 {false, false, "Light", "Light on", kWarning}};
    for (int i = 0; i < 4; ++i) {
        const auto& k = kinds[i];
        TKxCustomSwitch* s = nullptr;
        if (k.rocker)
            s = new TKxRockerSwitch;
        else
            s = new TKxToggleSwitch;
        s->SetCaption(QString::fromLatin1(k.caption));
        s->SetColorOn(k.color);
        s->SetOrientation(k.vertical ? orVertical : orHorizontal);
        s->setFixedSize(k.vertical ? QSize(64, 128) : QSize(128, 72));
        auto* l = lamp(QString::fromLatin1(k.lampCaption), k.color);
        l->SetLED_Position(lpTop);
        l->setFixedSize(96, 34);
        QObject::connect(s, &TKxBinGControl::OnStatusChanged, l,
                         [s, l] { l->SetChecked(s->Checked()); });
        s->SetChecked(i % 2 == 0);
        grid->addWidget(s, 0, i, Qt::AlignHCenter | Qt::AlignBottom);
        grid->addWidget(l, 1, i, Qt::AlignHCenter);
        switches_.push_back(s);
        switchLamps_.push_back(l);
    }
    return section(QStringLiteral("Rocker and toggle switches, each switching a lamp"), grid);
}

}  // namespace kxgallery
