#include "flash_fixture.h"

#include <ostream>

#include "kx/host/messagebox.h"

namespace kx::test {

void ResetFlashService() {
    ClearFlashList();
    delete FlashTimerInstance();
    SetFlashTickCounter(0);
    SetClosingDownOverride(std::nullopt);
}

void PrintTo(const TFlashLogEntry& e, std::ostream* os) {
    *os << "{" << e.Who << ", w=" << e.WParam << ", l=" << e.LParam << "}";
}

void TLoggingClient::WMFlash(TMessage& message) {
    EXPECT_EQ(message.Msg, KX_WM_FLASH);
    log_.push_back({name_, message.WParam, message.LParam});
    // Copy: the handler may delete this object and with it the handler.
    const std::function<void(TLoggingClient&)> handler = OnPulse;
    if (handler) handler(*this);
}

void FlashServiceTest::SetUp() {
    SetTickSourceFactory([] { return std::make_unique<TManualTickSource>(); });
    SetMessageBoxHook([this](const QString& text, const QString& caption, int flags) {
        shown_.push_back({text, caption, flags});
        return IDOK;
    });
    ResetFlashService();
}

void FlashServiceTest::TearDown() {
    ResetFlashService();
    SetTickSourceFactory({});
    SetMessageBoxHook({});
}

TManualTickSource& FlashServiceTest::ServingSource() {
    TKxFlashTimer* timer = FlashTimerInstance();
    EXPECT_NE(timer, nullptr);
    return *static_cast<TManualTickSource*>(timer->TickSource());
}

void FlashServiceTest::Ticks(int n) {
    for (int i = 0; i < n; ++i) {
        FakeClock().Advance(16);
        RunFlashTick();
    }
}

}  // namespace kx::test
