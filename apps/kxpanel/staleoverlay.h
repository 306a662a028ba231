#pragma once
// The stale state of a bound component, drawn by the runner over the component so that
// the components themselves need no notion of it: a translucent grey veil with a dark
// diagonal hatch covering the whole component, and the hint "no data since HH:MM:SS" as
// the component's tool tip and accessible description (the overlay carries the same
// accessible name and description). The overlay is a child of the component, follows its
// size, lets the mouse through (switches and dials still work), and hides again with the
// previous tool tip and description restored when the next value arrives.
#include <QString>
#include <QWidget>

namespace kx::panel {

class StaleOverlay : public QWidget {
    Q_OBJECT
  public:
    explicit StaleOverlay(QWidget* target);

    // since: the text of the time of the last data, "HH:MM:SS".
    void ShowStale(const QString& since);
    void Clear();
    bool IsStale() const { return stale_; }
    static QString HintText(const QString& since);

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* target_;
    bool stale_ = false;
    QString savedToolTip_;
    QString savedDescription_;
};

}  // namespace kx::panel
