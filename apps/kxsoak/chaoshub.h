#pragma once
// Deletion from inside event handlers: every signal of every component (found through
// its meta-object) lands here, and now and then the handler deletes the sender later or
// deletes another component of the stage at once, as a careless application would (only
// one that never takes the focus: Qt itself cannot delete a widget during its focus change).
#include <QObject>
#include <cstdint>
#include <functional>
#include <vector>

#include "valuepool.h"

class QWidget;

namespace kxsoak {

class TChaosHub : public QObject {
    Q_OBJECT
  public:
    // siblings: the components alive now, for the immediate deletions.
    using TComponents = std::function<std::vector<QWidget*>()>;

    TChaosHub(TValuePool& pool, TComponents components);

    // Routes every signal of component (its own and its Qt base's, not QObject's) here.
    void Watch(QWidget* component);
    // While disarmed handlers only count (a worker thread is posting to the subject).
    void SetArmed(bool armed) { armed_ = armed; }
    // One signal in oneIn leads to a deletion.
    void SetRate(int oneIn) { oneIn_ = oneIn; }

    int64_t Signals() const { return signals_; }
    int64_t Deletions() const { return deletions_; }

  private slots:
    void onSignal();

  private:
    TValuePool& pool_;
    TComponents components_;
    int oneIn_ = 1000;
    bool armed_ = true;
    int64_t signals_ = 0;
    int64_t deletions_ = 0;
};

}  // namespace kxsoak
