#pragma once

#include <condition_variable>
#include <cstddef>
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

// A few connections to one database, made when they are needed. After the database was away they
// are made anew; while it is away, requests learn so at once, and one of them tries again now and
// then. Nothing waits for ever: libpq's calls have no limit of their own, so a thread cuts the
// connections that take too long. Safe to use from several threads.
class Connections {
 public:
  using Report = std::function<void(std::string_view utf8)>;

  // `address` is a URI. `prepare` is called once, with the first connection that can be made.
  // `report` gets a line when the database goes away or is back, and when it refuses a statement.
  // Throws what `prepare` throws; a database that is away is no failure.
  Connections(const std::string& address, std::function<void(pqxx::connection&)> prepare,
              Report report);

  // Gives use(connection, again). A lost connection is replaced, and `use` called once more with
  // `again`: whether the lost one has committed is unknown. Throws StoreAway when the database is
  // away; pqxx::sql_error when it refuses a statement for another reason than time.
  template <typename Use>
  auto Run(Use use) {
    for (bool again = false;; again = true) {
      const std::shared_ptr<Session> session = Take();
      try {
        return use(session->connection, again);
      } catch (const pqxx::failure& failure) {
        Judge(*session, failure, again);
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
    const int socket;  // a duplicate, so that it is ours also after libpq has closed its own
    bool lost = false;
    Clock::time_point deadline;
  };

  std::shared_ptr<Session> Take();
  std::unique_ptr<Session> Connect();
  void GiveBack(Session* session);
  void Judge(Session& session, const pqxx::failure& failure, bool again);
  void SetAway(const std::string& reason);
  void Watch(const std::stop_token& stop);
  void WatchOver(Session& session, int milliseconds);

  const std::string address_;
  const std::function<void(pqxx::connection&)> prepare_;
  const Report report_;
  std::mutex mutex_;  // guards what follows
  std::condition_variable freed_;
  std::condition_variable_any ended_;
  std::vector<std::unique_ptr<Session>> idle_;
  std::vector<Session*> busy_;
  int open_ = 0;  // idle, busy and being made
  bool prepared_ = false;
  bool away_ = false;
  std::string reason_;  // of being away
  Clock::time_point nextTry_;
  std::jthread watcher_;  // ends first
};

}  // namespace tonadex::server
