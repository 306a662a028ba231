#include "kx/blink/flashtimer.h"

#include <QCoreApplication>

#include "kx/host/clock.h"
#include "kx/host/datetime.h"
#include "kx/host/messagebox.h"

namespace kx {
namespace {

using TFlashList = std::vector<std::unique_ptr<TFlash>>;

struct TFlashState {
    TFlashList List;
    TKxFlashTimer* Instance = nullptr;  // the automatically created one
    uint32_t TickCounter = 0;
    int InstanceCount = 0;
    TDateTime OneSecond = EncodeTime(0, 0, 1, 0);
    TDateTime NextSecond = 0;
    bool PostRoutineRegistered = false;
    bool ShutDown = false;  // the process is exiting: the list is gone for good
    std::optional<bool> ClosingOverride;
};

void ShutDownService();

// The state is never destroyed, so that subscribers destroyed late in static
// destruction still find a valid (empty) list. A separate holder, constructed
// right after it, frees the entries and the timer at process exit.
TFlashState& State() {
    static TFlashState* state = new TFlashState;
    struct TExitCleanup {
        ~TExitCleanup() { ShutDownService(); }
    };
    static TExitCleanup cleanup;
    return *state;
}

bool ClosingDown(const TFlashState& s) {
    return s.ClosingOverride ? *s.ClosingOverride : QCoreApplication::closingDown();
}

// Wrapping 64-bit sum: codes are arbitrary 64-bit values.
int64_t WrapAdd64(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}

void Append(TFlashList& list, std::unique_ptr<TFlash> entry) {
    // Room is reserved ahead (below), so this grows only an empty, unreserved list.
    if (list.size() == list.capacity()) list.reserve(list.capacity() + 4);
    list.push_back(std::move(entry));
}

void GrowIfTight(TFlashList& list) {
    if (list.capacity() - list.size() < 2) list.reserve(list.capacity() + 10);
}

// The QTimer must not outlive the application object: free the serving timer
// while the event dispatcher still exists. Late DelControl calls then find none.
void FreeTimerAtApplicationExit() {
    TFlashState& s = State();
    s.PostRoutineRegistered = false;
    delete s.Instance;
}

void EnsureTimer(TFlashState& s) {
    if (s.List.empty() || s.Instance || s.ShutDown || ClosingDown(s)) return;
    s.NextSecond = Now() + s.OneSecond;
    s.Instance = new TKxFlashTimer(nullptr);
    if (!s.PostRoutineRegistered) {
        s.PostRoutineRegistered = true;
        qAddPostRoutine(&FreeTimerAtApplicationExit);
    }
}

void FreeTimerWhenClosing(TFlashState& s) {
    if (ClosingDown(s) && s.List.empty()) delete s.Instance;
}

void ShutDownService() {
    TFlashState& s = State();
    s.ShutDown = true;
    ClearFlashList();
    s.List.shrink_to_fit();
    delete s.Instance;
}

void Notify(const TFlash& entry, uint32_t tick, int32_t lParam) {
    // Read both fields first: the handler may free the entry.
    if (TKxFlashClient* control = entry.Control) {
        TMessage message{KX_WM_FLASH, static_cast<intptr_t>(tick), lParam, 0};
        control->WMFlash(message);
    } else if (TKxFlashProc proc = entry.FlashProc) {
        proc(static_cast<int32_t>(tick), lParam);
    }
}

// Interval service. The due test compares the 64-bit due time with the 32-bit
// tick count while the lateness is the 32-bit difference, exactly as the service
// has always computed it; all sums wrap. Consequences kept on purpose: a due
// time at or beyond 2^32 (set just before GetTickCount wraps, every 49.7 days)
// is not recognised until the difference reaches 2^31 - 1 ms, and an entry more
// than 2^31 ms late counts as not late (lParam 0, phase restarted).
bool IntervalDue(TFlash& entry, uint32_t nowMs, int32_t& lParam) {
    const int32_t d = static_cast<int32_t>(nowMs - static_cast<uint32_t>(entry.NextPulseTime));
    int64_t a = d < 0 ? -static_cast<int64_t>(d) : d;
    if (entry.NextPulseTime > static_cast<int64_t>(nowMs) && a < 2147483647) return false;
    const int64_t late = a < 2147483647 ? d : 0;
    if (a > 1000) a = 0;  // more than a second late: restart the phase, don't catch up
    const int64_t next = WrapAdd64(nowMs, entry.IntervalTime);
    entry.NextPulseTime = late >= 0 ? WrapAdd64(next, -a) : WrapAdd64(next, a);
    lParam = static_cast<int32_t>(a);
    return true;
}

void FlashTick() {
    TFlashState& s = State();
    s.TickCounter = s.TickCounter < 4294967295u ? s.TickCounter + 1 : 0;
    const uint32_t tick = s.TickCounter;
    const uint32_t nowMs = GetTickCount();
    bool secondTick = false;
    if (Now() >= s.NextSecond) {
        // From the old due time, not from Now: a backlog costs one pulse per tick.
        s.NextSecond += s.OneSecond;
        secondTick = true;
    }

    const size_t count = s.List.size();
    for (size_t i = 0; i < count; ++i) {
        if (ClosingDown(s)) break;
        if (i >= s.List.size()) break;  // handlers removed entries
        TFlash& entry = *s.List[i];
        if (!entry.Control && !entry.FlashProc) {
            // The entry moving into this place waits for the next tick.
            s.List.erase(s.List.begin() + static_cast<std::ptrdiff_t>(i));
            continue;
        }
        const int64_t code = entry.IntervalTime;
        if (code >= 2 && code <= 6) {
            const bool state = ((tick >> code) & 1u) != 0;
            if (state == entry.FlashBit) continue;
            entry.FlashBit = state;
            Notify(entry, tick, state ? 1 : 0);
        } else if (code == kFlashSecondCode) {
            if (secondTick) Notify(entry, tick, 0);
        } else {
            int32_t lateness = 0;
            if (IntervalDue(entry, nowMs, lateness)) Notify(entry, tick, lateness);
        }
    }
}

}  // namespace

TKxFlashTimer::TKxFlashTimer(QObject* owner) : TKxFlash(owner) {
    TFlashState& s = State();
    ++s.InstanceCount;
    if (s.InstanceCount == 1) {
        SetOnTimer([this](QObject*) { flash(); });
    } else {
        MessageBox(QStringLiteral("Only one TKxFlashTimer per Application!\rRemove it..."),
                   QStringLiteral("Error Message"), 0);
    }
}

TKxFlashTimer::~TKxFlashTimer() {
    TFlashState& s = State();
    --s.InstanceCount;
    if (s.Instance == this) s.Instance = nullptr;
}

void TKxFlashTimer::flash() {
    FlashTick();
}

void AddControl(TKxFlashClient* control, int64_t code) {
    TFlashState& s = State();
    if (!control || s.ShutDown) return;
    const int64_t next = WrapAdd64(GetTickCount(), code);
    bool found = false;
    for (const std::unique_ptr<TFlash>& entry : s.List) {
        if (entry->Control != control) continue;
        entry->IntervalTime = code;
        entry->NextPulseTime = next;
        found = true;
    }
    if (!found)
        Append(s.List, std::make_unique<TFlash>(TFlash{control, nullptr, code, next, false}));
    GrowIfTight(s.List);
    EnsureTimer(s);
}

void AddProc(TKxFlashProc proc, int64_t code) {
    TFlashState& s = State();
    if (!proc || s.ShutDown) return;
    const int64_t next = WrapAdd64(GetTickCount(), code);
    bool found = false;
    for (const std::unique_ptr<TFlash>& entry : s.List) {
        if (entry->FlashProc != proc) continue;
        entry->IntervalTime = code;
        entry->NextPulseTime = next;
        found = true;
    }
    if (!found) Append(s.List, std::make_unique<TFlash>(TFlash{nullptr, proc, code, next, false}));
    GrowIfTight(s.List);
    EnsureTimer(s);
}

void DelControl(TKxFlashClient* control) {
    TFlashState& s = State();
    if (!control) return;
    for (size_t i = 0; i < s.List.size(); ++i) {
        if (s.List[i]->Control == control) {
            DelControlNo(static_cast<int>(i));
            break;
        }
    }
    FreeTimerWhenClosing(s);
}

void DelProc(TKxFlashProc proc) {
    TFlashState& s = State();
    if (!proc) return;
    for (size_t i = s.List.size(); i-- > 0;) {
        if (s.List[i]->FlashProc == proc) {
            DelProcNo(static_cast<int>(i));
            break;
        }
    }
    FreeTimerWhenClosing(s);
}

void DelControlNo(int index) {
    TFlashList& list = State().List;
    if (index < 0 || static_cast<size_t>(index) >= list.size()) return;
    list.erase(list.begin() + index);
}

void DelProcNo(int index) {
    DelControlNo(index);
}

void ClearFlashList() {
    State().List.clear();
}

uint32_t FlashTickCounter() {
    return State().TickCounter;
}
void SetFlashTickCounter(uint32_t value) {
    State().TickCounter = value;
}
const std::vector<std::unique_ptr<TFlash>>& FlashList() {
    return State().List;
}
TKxFlashTimer* FlashTimerInstance() {
    return State().Instance;
}
void RunFlashTick() {
    FlashTick();
}
void SetClosingDownOverride(std::optional<bool> closing) {
    State().ClosingOverride = closing;
}

}  // namespace kx
