#include "server/postgresql/connections.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "server/limits.h"
#include "server/postgresql/sql.h"

namespace tonadex::server {
namespace {

using std::chrono::milliseconds;

std::string WithSessionParameters(const std::string& address) {
  return address + (address.find('?') == address.npos ? "?" : "&") + sql::kSessionParameters;
}

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

// Whether the connection failed, not the statement. SQLSTATE class 57P: the database is shutting
// down.
bool IsLost(const pqxx::connection& connection, const pqxx::failure& failure) {
  const auto* refused = dynamic_cast<const pqxx::sql_error*>(&failure);
  return !connection.is_open() || refused == nullptr || refused->sqlstate().starts_with("57P");
}

bool IsTimeOut(const pqxx::failure& failure) {
  const auto* refused = dynamic_cast<const pqxx::sql_error*>(&failure);
  return refused != nullptr && refused->sqlstate() == "57014";
}

}  // namespace

Connections::Session::Session(const std::string& address)
    : connection(address), socket(::dup(connection.sock())) {}

Connections::Session::~Session() {
  ::close(socket);
}

Connections::Connections(const std::string& address, std::function<void(pqxx::connection&)> prepare,
                         Report report)
    : address_(WithSessionParameters(address)),
      prepare_(std::move(prepare)),
      report_(std::move(report)),
      watcher_([this](const std::stop_token& stop) { Watch(stop); }) {
  try {
    Take(Clock::time_point::max());
  } catch (const StoreAway&) {
    // Already reported; Run tries again later.
  }
}

// Takes an idle connection or opens one. While the database is unreachable only one thread tries.
std::shared_ptr<Connections::Session> Connections::Take(Clock::time_point end) {
  std::unique_lock lock(mutex_);
  const auto isAway = [this] { return away_ && Clock::now() < nextTry_; };
  const auto isFree = [this] { return !idle_.empty() || open_ < kDatabaseConnections; };
  const auto waitEnd = std::min(end, Clock::now() + milliseconds(kDatabaseWaitMs));
  if (!freed_.wait_until(lock, waitEnd, [&] { return isAway() || isFree(); })) {
    throw StoreAway("todas las conexiones con la base de datos están ocupadas");
  }
  if (isAway()) {
    throw StoreAway(reason_);
  }
  std::unique_ptr<Session> session;
  if (idle_.empty()) {
    ++open_;
    nextTry_ = Clock::now() + milliseconds(kDatabaseUseMs);
    lock.unlock();
    session = Connect();
    lock.lock();
  } else {
    session = std::move(idle_.back());
    idle_.pop_back();
    busy_.push_back(session.get());
  }
  session->deadline = std::min(end, Clock::now() + milliseconds(kDatabaseUseMs));
  return {session.release(), [this](Session* used) { GiveBack(used); }};
}

// A new connection under the watcher's control and counted in open_; throws StoreAway on failure.
std::unique_ptr<Connections::Session> Connections::Connect() {
  std::unique_ptr<Session> session;
  try {
    session = std::make_unique<Session>(address_);
    bool prepared = false;
    {
      const std::lock_guard lock(mutex_);
      prepared = prepared_;
      session->deadline =
          Clock::now() + milliseconds(prepared ? kDatabaseUseMs : kDatabaseUpgradeMs);
      busy_.push_back(session.get());
    }
    if (!prepared) {
      prepare_(session->connection);
    }
    const std::lock_guard lock(mutex_);
    prepared_ = true;
    if (std::exchange(away_, false)) {
      report_("la base de datos responde de nuevo");
    }
    return session;
  } catch (const std::exception& failure) {
    const std::lock_guard lock(mutex_);
    std::erase(busy_, session.get());
    --open_;
    if (dynamic_cast<const pqxx::broken_connection*>(&failure) != nullptr) {
      SetAway(FirstLine(failure.what()));
      throw StoreAway(reason_);
    }
    freed_.notify_one();
    throw;
  }
}

void Connections::GiveBack(Session* session) {
  std::unique_ptr<Session> owned(session);
  {
    const std::lock_guard lock(mutex_);
    std::erase(busy_, session);
    if (session->lost || !session->connection.is_open()) {
      --open_;
    } else {
      idle_.push_back(std::move(owned));
    }
  }
  freed_.notify_one();
}

// Handles a failed use; returns if it should be tried again, else throws.
void Connections::Judge(Session& session, const pqxx::failure& failure, bool again) {
  const std::string reason = FirstLine(failure.what());
  if (!IsLost(session.connection, failure)) {
    report_(reason);
    if (IsTimeOut(failure)) {
      throw StoreAway(reason);
    }
    throw;
  }
  const std::lock_guard lock(mutex_);
  session.lost = true;
  open_ -= static_cast<int>(idle_.size());
  idle_.clear();  // probably lost as well
  if (again) {
    SetAway(reason);
    throw StoreAway(reason);
  }
}

void Connections::SetAway(const std::string& reason) {
  reason_ = reason;
  nextTry_ = Clock::now() + milliseconds(kDatabaseRetryMs);
  freed_.notify_all();  // those that wait for a connection fail at once
  if (!std::exchange(away_, true)) {
    report_("no se llega a la base de datos: " + reason);
  }
}

void Connections::Watch(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    ended_.wait_for(lock, stop, milliseconds(kDatabaseWatchMs), [] { return false; });
    for (const Session* session : busy_) {
      if (Clock::now() > session->deadline) {
        ::shutdown(session->socket, SHUT_RDWR);
      }
    }
  }
}

}  // namespace tonadex::server
