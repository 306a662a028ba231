#include "metercard.h"

#include <QEvent>
#include <QLabel>
#include <algorithm>

namespace kxgallery {
namespace {

constexpr int kPadding = 10;
constexpr int kCaptionGap = 6;
// Narrow instruments still get a caption this wide.
constexpr int kMinCaptionWidth = 170;

}  // namespace

MeterCard::MeterCard(QWidget* meter, QWidget* parent)
    : QFrame(parent), meter_(meter), caption_(new QLabel(this)) {
    setObjectName(QStringLiteral("meterCard"));
    setFrameShape(QFrame::NoFrame);
    caption_->setObjectName(QStringLiteral("meterCaption"));
    caption_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    caption_->setWordWrap(true);
    caption_->setTextFormat(Qt::RichText);
    meter_->setParent(this);
    meter_->installEventFilter(this);
    placeMeter();
}

void MeterCard::SetCaption(const QString& title, const QStringList& details) {
    QStringList lines;
    for (const QString& line : details)
        lines << line.toHtmlEscaped();
    caption_->setText(QStringLiteral("<b>%1</b><br><span style=\"color:#5f6670\">%2</span>")
                          .arg(title.toHtmlEscaped(), lines.join(QStringLiteral("<br>"))));
    placeMeter();
}

QString MeterCard::CaptionText() const {
    return caption_->text();
}

QSize MeterCard::sizeHint() const {
    const int captionWidth = std::max(meter_->width(), kMinCaptionWidth);
    const int captionHeight = caption_->heightForWidth(captionWidth);
    return QSize(std::max(meter_->width(), captionWidth) + 2 * kPadding,
                 meter_->height() + kCaptionGap + std::max(captionHeight, 0) + 2 * kPadding);
}

QSize MeterCard::minimumSizeHint() const {
    return sizeHint();
}

void MeterCard::resizeEvent(QResizeEvent* e) {
    QFrame::resizeEvent(e);
    placeMeter();
}

bool MeterCard::eventFilter(QObject* watched, QEvent* e) {
    // The meter changed its own size (a new scale font, other labels): follow it.
    if (watched == meter_ && e->type() == QEvent::Resize) {
        updateGeometry();
        placeMeter();
    }
    return QFrame::eventFilter(watched, e);
}

void MeterCard::placeMeter() {
    // Captions sit at the bottom so that they line up across a row; the meter is centred
    // in the space above.
    const int textWidth = width() - 2 * kPadding;
    const int captionHeight = std::max(caption_->heightForWidth(textWidth), 0);
    const int captionTop = height() - kPadding - captionHeight;
    const int space = captionTop - kCaptionGap - kPadding;
    const int top = kPadding + std::max(0, (space - meter_->height()) / 2);
    const int left = (width() - meter_->width()) / 2;
    if (meter_->pos() != QPoint(left, top)) meter_->move(left, top);
    caption_->setGeometry(kPadding, captionTop, textWidth, captionHeight);
}

}  // namespace kxgallery
