#include "server/end_signal.h"

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/thread_pool.hpp>
#include <csignal>

namespace tonadex::server {

namespace asio = boost::asio;

void WaitForEndSignal(const std::function<void()>& ready,
                      const std::function<void(const std::stop_token&)>& reload) {
  std::stop_source end;
  std::atomic<bool> waiting{false};
  asio::thread_pool reloader(1);
  asio::io_context context;
  asio::signal_set signals(context, SIGTERM, SIGINT);
#ifdef SIGHUP
  signals.add(SIGHUP);
#endif
  ready();
  for (int got = 0; got != SIGTERM && got != SIGINT; context.restart()) {
    signals.async_wait([&got](boost::system::error_code, int signal) { got = signal; });
    context.run();
    if (got != SIGTERM && got != SIGINT && !waiting.exchange(true)) {
      asio::post(reloader, [&] {
        waiting = false;
        if (!end.stop_requested()) {
          reload(end.get_token());
        }
      });
    }
  }
  end.request_stop();
  reloader.join();
}

}  // namespace tonadex::server
