#pragma once
// A card on an instrument page: the instrument centred in its cell with a small caption
// below. Instruments size themselves (AutoSize), so the instrument is not managed by a
// layout; the card follows its size instead and keeps it centred.
#include <QFrame>
#include <QStringList>

class QLabel;

namespace kxgallery {

class MeterCard : public QFrame {
    Q_OBJECT
  public:
    // Takes the instrument over as a child.
    MeterCard(QWidget* meter, QWidget* parent = nullptr);

    QWidget* Meter() const { return meter_; }
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

    QWidget* meter_;
    QLabel* caption_;
};

}  // namespace kxgallery
