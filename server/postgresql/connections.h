#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <pqxx/pqxx>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "server/rate_limit.h"
#include "server/store.h"

namespace tonadex::server {

// A pool of a few connections to one database, opened on demand and again after an outage. While
// the database is unreachable, requests fail at once and one of them tries to connect from time to
// time. libpq's calls have no time limit of their own, so a thread closes the sockets of
// connections that take too long. Safe to use from several threads.
class Connections {
 public:
  using Report = std::function<void(std::string_view utf8)>;

  // `address` is a URI. `prepare` is called once, with the first connection. `report` gets a line
  // when the database becomes unreachable or reachable, and when it rejects a statement. Throws
  // what `prepare` throws; an unreachable database is not an error here.
  Connections(const std::string& address, std::function<void(pqxx::connection&)> prepare,
              Report report);

  // Returns use(connection, again). If the connection is lost, `use` is called once more on a new
  // one with `again` true; whether the first call has committed is then unknown. Throws StoreAway
  // when the database is unreachable or a statement takes too long, or a connection is lost after
  // `end`; pqxx::sql_error when it rejects a statement for another reason. A connection is waited
  // for and used until `end` at most; opening a new one may take the time-out of libpq longer.
  template <typename Use>
  auto Run(Use use, Clock::time_point end = Clock::time_point::max()) {
    for (bool again = false;; again = true) {
      const std::shared_ptr<Session> session = Take(end);
      try {
        return use(session->connection, again);
      } catch (const pqxx::failure& failure) {
        Judge(*session, failure, again);
        if (Clock::now() >= end) {
          throw StoreAway(failure.what());
        }
      }
    }
  }

 private:
  struct Session {
    explicit Session(const std::string& address);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    pqxx::connection connection;
    const int socket;  // a duplicate that stays valid after libpq closes its own
    bool lost = false;
    Clock::time_point deadline;
  };

  std::shared_ptr<Session> Take(Clock::time_point end);
  std::unique_ptr<Session> Connect();
  void GiveBack(Session* session);
  void Judge(Session& session, const pqxx::failure& failure, bool again);
  void SetAway(const std::string& reason);
  void Watch(const std::stop_token& stop);

  const std::string address_;
  const std::function<void(pqxx::connection&)> prepare_;
  const Report report_;
  std::mutex mutex_;  // guards the members below
  std::condition_variable freed_;
  std::condition_variable_any ended_;
  std::vector<std::unique_ptr<Session>> idle_;
  std::vector<Session*> busy_;
  int open_ = 0;  // idle, busy and connecting
  bool prepared_ = false;
  bool away_ = false;
  std::string reason_;  // why it is unreachable
  Clock::time_point nextTry_;
  std::jthread watcher_;  // last: its destructor joins the thread, which uses the members above
};

}  // namespace tonadex::server
