#include "Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile std::sig_atomic_t s_requested = 0;

} // namespace

void Interrupt::keep()
{
    struct sigaction action = {};
    action.sa_handler = [](int) { s_requested = 1; };
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    // A reader of the output that goes away is told by a failed write.
    std::signal(SIGPIPE, SIG_IGN);
}

bool Interrupt::requested()
{
    return s_requested != 0;
}
