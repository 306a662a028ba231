#pragma once
// The shared blink service: one process-wide subscription list served by one
// TKxFlashTimer, which is created on the first subscription.
//
// Each tick (16 ms) advances a 32-bit tick counter and serves every entry:
// - codes 2..6: a square wave, the state being bit `code` of the tick counter;
//   the subscriber hears of changes only, with LParam = the new state (0 or 1);
//   all subscribers with the same code are in phase;
// - code 32: once per wall-clock second, LParam 0; after a pause the backlog is
//   worked off one pulse per tick;
// - any other code: a pulse every `code` milliseconds, LParam = the lateness in ms
//   absorbed into the next due time (0 when more than a second late: the phase
//   restarts instead of catching up). Due times are 64-bit sums (wrapping) that are
//   compared with the 32-bit GetTickCount while the lateness is the 32-bit
//   difference: a due time set just before GetTickCount wraps (every 49.7 days)
//   is recognised only once that difference reaches 2^31 - 1 ms.
// A control receives KX_WM_FLASH through WMFlash with WParam = tick counter; a
// procedure is called with (tick counter, LParam), both cast to int32 with wrap.
//
// Everything runs on the GUI thread. Handlers may subscribe, unsubscribe (also
// themselves) or delete their object during a tick: the walk re-checks the count
// before each entry. An entry removed before the walk's index moves the next one
// into the served place, which then waits for the next tick.
#include <QObject>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "kx/blink/flash.h"
#include "kx/blink/flashclient.h"

namespace kx {

enum TFlashFreq : int { ff8Hz, ff4Hz, ff2Hz, ff1Hz, ff05Hz };

// Square-wave code of a blink frequency (ff8Hz → 2 … ff05Hz → 6).
constexpr int64_t FlashFreqCode(TFlashFreq freq) {
    return static_cast<int64_t>(freq) + 2;
}
// The once-per-second service code.
constexpr int64_t kFlashSecondCode = 32;

using TKxFlashProc = void (*)(int32_t WPar, int32_t LPar);

// One subscription.
struct TFlash {
    TKxFlashClient* Control = nullptr;  // notified through WMFlash (takes precedence)
    TKxFlashProc FlashProc = nullptr;   // called when there is no control
    int64_t IntervalTime = 0;           // service code
    int64_t NextPulseTime = 0;          // tick count (ms) at which an interval pulse is due
    bool FlashBit = false;              // last square-wave state sent
};
using PFlashRecord = TFlash*;

class TKxFlashTimer : public TKxFlash {
    Q_OBJECT
  public:
    // Only one instance per process serves the list. A second one, while another
    // exists, reports "Only one TKxFlashTimer per Application!" once through
    // MessageBox and stays inert for its whole life.
    explicit TKxFlashTimer(QObject* owner = nullptr);
    ~TKxFlashTimer() override;

  protected:
    // One tick of the service (bound as OnTimer of the serving instance).
    void flash();
};

// Subscribes control with code, or changes the code of every entry it already has
// (never a second entry); the next interval pulse is due at GetTickCount + code.
// A square-wave entry keeps the state last sent. nullptr is ignored. Creates the
// serving TKxFlashTimer when there is none (not while the application object is
// being destroyed: then the entry is recorded but not served).
void AddControl(TKxFlashClient* control, int64_t code);
// The same for a procedure; nullptr is ignored.
void AddProc(TKxFlashProc proc, int64_t code);
// Removes the first entry of control (searching from the front). While the
// application object is being destroyed, freeing the last entry also frees the
// serving timer. Unknown or null subscribers are ignored.
void DelControl(TKxFlashClient* control);
// Removes the last entry of proc (searching from the back), as DelControl.
void DelProc(TKxFlashProc proc);
// Removes the entry at index; an index outside 0..count-1 does nothing.
void DelControlNo(int index);
void DelProcNo(int index);
// Frees every entry and empties the list (its capacity stays). Meant for shutdown
// and tests; subscribers are not told.
void ClearFlashList();

// ---- Hooks for tests and benchmarks -------------------------------------------

uint32_t FlashTickCounter();
void SetFlashTickCounter(uint32_t value);
// The subscription list. Capacity grows in steps of 10 (an empty list first takes
// room for 4) and never shrinks while the process runs. Tests may edit entries
// through the pointers, e.g. blank one to exercise the removal of empty entries.
const std::vector<std::unique_ptr<TFlash>>& FlashList();
// The automatically created serving instance, or nullptr.
TKxFlashTimer* FlashTimerInstance();
// Runs one tick of the service as the serving timer would.
void RunFlashTick();
// Replaces "the application object is being destroyed" (QCoreApplication::closingDown)
// for tests; nullopt restores it.
void SetClosingDownOverride(std::optional<bool> closing);

}  // namespace kx
