#pragma once
// The application object of the soak: it knows when an event handler runs inside a
// paint, where widgets must not be deleted at once (Qt is walking the siblings being
// painted), so the chaos handlers defer their deletions there.
#include <QApplication>

namespace kxsoak {

class TSoakApplication : public QApplication {
  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
    // Whether a paint, an update request or an expose is being delivered now.
    static bool Painting() { return paintDepth_ > 0; }

  private:
    static inline int paintDepth_ = 0;
};

}  // namespace kxsoak
