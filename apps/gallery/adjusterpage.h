#pragma once
// The "KxAnalogAdj" page: every adjuster drives an indicator on the same page (dials with
// their three pointer marks and a round meter, an upright bar and a linear meter; a gear
// dial of ten turns and a half-round meter; a horizontal slider and a bar; a vertical
// slider and an upright meter), worked with mouse, wheel and keyboard; the last finished
// change of each is shown beside it.
#include <vector>

#include "pages.h"

class QLabel;

namespace kx {
class TKxAnalogCControl;
class TKxAnalogGControl;
}  // namespace kx

namespace kxgallery {

class AdjusterPage : public GalleryPage {
    Q_OBJECT
  public:
    explicit AdjusterPage(QWidget* parent = nullptr);

    const std::vector<kx::TKxAnalogCControl*>& Adjusters() const { return adjusters_; }
    const std::vector<kx::TKxAnalogGControl*>& Indicators() const { return indicators_; }
    // The text under adjuster i: its last finished change.
    QString Report(int i) const;

  private:
    std::vector<kx::TKxAnalogCControl*> adjusters_;
    std::vector<kx::TKxAnalogGControl*> indicators_;
    std::vector<QLabel*> reports_;
};

}  // namespace kxgallery
