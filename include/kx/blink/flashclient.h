#pragma once
// What a control must implement to receive blink, interval and second pulses.
#include <cstdint>

namespace kx {

// A message as the controls receive it: wParam and lParam as stated by the sender,
// Result for an answer (unused by the blink service).
struct TMessage {
    uint32_t Msg;
    intptr_t WParam;
    intptr_t LParam;
    intptr_t Result;
};

constexpr uint32_t WM_USER = 0x400;
// The blink service's pulse: WParam is the tick counter, LParam the service's value.
constexpr uint32_t KX_WM_FLASH = WM_USER + 100;

// Subscriber interface, inherited next to QWidget by the blinking controls.
class TKxFlashClient {
  public:
    // Withdraws any subscription still held by this object, so that a subscriber
    // that forgot to call DelControl leaves no dangling entry behind. Subscribers
    // still call DelControl themselves (in their destructor and when they stop).
    virtual ~TKxFlashClient();
    // Called synchronously inside the blink tick; may subscribe, unsubscribe or
    // delete this object.
    virtual void WMFlash(TMessage& message) = 0;
};

}  // namespace kx
