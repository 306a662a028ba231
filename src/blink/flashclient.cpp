#include "blink/flashclient.h"

#include "blink/flashtimer.h"

namespace kx {

TKxFlashClient::~TKxFlashClient() {
    DelControl(this);
}

}  // namespace kx
