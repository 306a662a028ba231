#pragma once
// A card on the meter page: the meter centred in its cell with a small caption below.
// Round meters size themselves (AutoSize), so the meter is not managed by a layout;
// the card follows the meter's size instead and keeps it centred.
#include <QFrame>
#include <QStringList>

class QLabel;

namespace kx {
class TKxRMeter;
}

namespace kxgallery {

class MeterCard : public QFrame {
    Q_OBJECT
  public:
    // Takes the meter over as a child.
    MeterCard(kx::TKxRMeter* meter, QWidget* parent = nullptr);

    kx::TKxRMeter* Meter() const { return meter_; }
    // A bold title line and grey detail lines.
    void SetCaption(const QString& title, const QStringList& details);
    QString CaptionText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

  private:
    void placeMeter();

    kx::TKxRMeter* meter_;
    QLabel* caption_;
};

}  // namespace kxgallery
