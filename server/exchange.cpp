#include "server/exchange.h"

#include <array>
#include <cstdio>

#include "core/text.h"
#include "json/text.h"
#include "server/handler.h"

namespace tonadex::server {
namespace {

using core::Code;

constexpr std::string_view kUnknown = "-";

std::string PathForLog(std::string_view target) {
  std::string path;
  for (const char c : target.substr(0, target.find('?'))) {
    if (Code(c) > ' ' && Code(c) < 0x7f) {
      path += c;
    } else {
      AppendEscaped(path, c);
    }
  }
  return path;
}

std::string UtcNow() {
  using namespace std::chrono;
  const auto now = floor<milliseconds>(system_clock::now());
  const auto today = floor<days>(now);
  const year_month_day date(today);
  const hh_mm_ss time(now - today);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", int(date.year()),
                unsigned(date.month()), unsigned(date.day()), int(time.hours().count()),
                int(time.minutes().count()), int(time.seconds().count()),
                int(time.subseconds().count()));
  return text.data();
}

struct Values {
  std::string time, method, path, milliseconds;
};

Values ValuesOf(const Exchange& exchange) {
  std::array<char, 32> milliseconds{};
  std::snprintf(milliseconds.data(), milliseconds.size(), "%.2f", exchange.taken.count() * 1000);
  const bool known = !exchange.method.empty();
  return {UtcNow(), std::string(known ? exchange.method : kUnknown),
          known ? PathForLog(exchange.target) : std::string(kUnknown), milliseconds.data()};
}

}  // namespace

std::string LogLine(const Exchange& exchange) {
  const Values values = ValuesOf(exchange);
  return values.time + " " + exchange.client + " " + values.method + " " + values.path + " " +
         std::to_string(exchange.status) + " " + std::to_string(exchange.bytes) + " " +
         values.milliseconds;
}

std::string LogJson(const Exchange& exchange) {
  const Values values = ValuesOf(exchange);
  return "{" +
         json::JsonMembers({{"hora", values.time},
                            {"cliente", exchange.client},
                            {"metodo", values.method},
                            {"ruta", values.path}}) +
         ",\"estado\":" + std::to_string(exchange.status) +
         ",\"bytes\":" + std::to_string(exchange.bytes) + ",\"ms\":" + values.milliseconds + "}";
}

}  // namespace tonadex::server
