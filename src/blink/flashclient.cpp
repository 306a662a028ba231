#include "kx/blink/flashclient.h"

#include "kx/blink/flashtimer.h"

namespace kx {

TKxFlashClient::~TKxFlashClient() {
    DelControl(this);
}

}  // namespace kx
