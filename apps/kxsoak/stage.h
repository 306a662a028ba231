#pragma once
// The top-level window one component is soaked in: the subject and two siblings of the
// same class (so that groups, shared words and sibling deletion have partners). A
// component deleted by a signal handler is made again from the catalogue at the next
// Refill.
#include <QPointer>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "kx/catalogue/catalogue.h"

namespace kxsoak {

class TSoakStage {
  public:
    using TCreated = std::function<void(QWidget*)>;

    // onCreated runs for every component the stage makes (the subject included).
    TSoakStage(const kx::TKxCatalogueEntry& entry, TCreated onCreated);
    ~TSoakStage();
    TSoakStage(const TSoakStage&) = delete;
    TSoakStage& operator=(const TSoakStage&) = delete;

    QWidget* Window() const { return window_.get(); }
    // The component being fed; null between its deletion and the next Refill.
    QWidget* Subject() const { return subject_.data(); }
    // Subject and siblings that are alive now.
    std::vector<QWidget*> Components() const;
    // Makes every deleted component again; returns how many it made.
    int Refill();
    // Subject to w x h (the window grows to hold it), shown.
    void Resize(int w, int h);
    // The size the memory is measured at, so that a big last size does not count.
    void Normalize();

  private:
    QWidget* make(const QRect& geometry);

    const kx::TKxCatalogueEntry& entry_;
    TCreated onCreated_;
    std::unique_ptr<QWidget> window_;
    QPointer<QWidget> subject_;
    std::array<QPointer<QWidget>, 2> siblings_;
};

}  // namespace kxsoak
