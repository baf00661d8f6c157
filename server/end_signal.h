#pragma once

#include <functional>
#include <stop_token>

namespace tonadex::server {

// Blocks until SIGTERM or SIGINT. Calls `ready` once it handles these signals. SIGHUP (not on
// Windows) calls `reload` in another thread; several signals before it starts count as one. At the
// end `stop` is requested of a running reload.
void WaitForEndSignal(const std::function<void()>& ready,
                      const std::function<void(const std::stop_token& stop)>& reload);

}  // namespace tonadex::server
