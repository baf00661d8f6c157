#include "server/metrics.h"

#include <algorithm>
#include <charconv>

#include "net/addresses.h"
#include "server/handler.h"

namespace tonadex::server {
namespace {

constexpr std::array kDurations = {0.001, 0.005, 0.025, 0.1, 0.5, 2.5, 10.0};  // seconds

struct Refusal {
  int status;
  std::string_view limit;
};
constexpr Refusal kRefusals[] = {
    {413, "longitud"}, {414, "longitud"}, {429, "ritmo"}, {431, "longitud"}};

// The upload paths and their status of success.
struct UploadRoute {
  std::string_view route;
  int status;
};
constexpr UploadRoute kUploads[] = {{net::kUploadPath, 200}, {"/api/v1/melodias", 201}};

std::string_view LimitOf(const Exchange& exchange) {
  const auto known = std::ranges::find(kRefusals, exchange.status, &Refusal::status);
  return known == std::end(kRefusals) ? exchange.limit : known->limit;
}

std::string Number(double value) {
  std::array<char, 32> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

// Appends the lines of one metric.
class Metric {
 public:
  Metric(std::string& text, std::string_view name, std::string_view type, std::string_view help)
      : text_(text), name_("tonadex_" + std::string(name)) {
    text_.append("# HELP ").append(name_).append(" ").append(help).append("\n# TYPE ");
    text_.append(name_).append(" ").append(type).append("\n");
  }
  // `labels`: `name="value",…`; values come from this program and need no escapes.
  void Add(const std::string& labels, const std::string& value, std::string_view ending = {}) {
    text_.append(name_).append(ending);
    text_.append(labels.empty() ? "" : "{" + labels + "}").append(" ").append(value).append("\n");
  }

 private:
  std::string& text_;
  const std::string name_;
};

std::string Label(std::string_view name, std::string_view value) {
  return std::string(name).append("=\"").append(value).append("\"");
}

}  // namespace

void Metrics::Count(const Exchange& exchange) {
  static_assert(std::tuple_size_v<decltype(Route::upTo)> == kDurations.size() + 1);
  const double seconds = exchange.taken.count();
  const std::string route = RouteOf(exchange.target);
  const std::string_view limit = LimitOf(exchange);
  const auto first = std::ranges::lower_bound(kDurations, seconds) - kDurations.begin();
  const std::lock_guard lock(mutex_);
  Route& counts = routes_[route];
  ++counts.statuses[exchange.status];
  std::for_each(counts.upTo.begin() + first, counts.upTo.end(), [](auto& count) { ++count; });
  counts.bytes += exchange.bytes;
  counts.seconds += seconds;
  limit.empty() ? 0 : ++refusals_[limit];
}

std::string Metrics::Text(const Gauges& gauges) const {
  const std::lock_guard lock(mutex_);
  std::string text;
  Metric requests(text, "peticiones_total", "counter", "Peticiones respondidas");
  std::uint64_t stored = 0;
  for (const auto& [route, counts] : routes_) {
    for (const auto& [status, count] : counts.statuses) {
      requests.Add(Label("ruta", route) + "," + Label("estado", std::to_string(status)),
                   std::to_string(count));
      for (const UploadRoute& upload : kUploads) {
        stored += upload.route == route && upload.status == status ? count : 0;
      }
    }
  }
  Metric durations(text, "duracion_segundos", "histogram", "Tiempo hasta el final de la respuesta");
  for (const auto& [route, counts] : routes_) {
    const std::string label = Label("ruta", route);
    for (std::size_t i = 0; i < counts.upTo.size(); ++i) {
      const std::string bound = i < kDurations.size() ? Number(kDurations[i]) : "+Inf";
      durations.Add(label + "," + Label("le", bound), std::to_string(counts.upTo[i]), "_bucket");
    }
    durations.Add(label, Number(counts.seconds), "_sum");
    durations.Add(label, std::to_string(counts.upTo.back()), "_count");
  }
  Metric bytes(text, "bytes_total", "counter", "Bytes de los cuerpos de las respuestas");
  for (const auto& [route, counts] : routes_) {
    bytes.Add(Label("ruta", route), std::to_string(counts.bytes));
  }
  Metric refusals(text, "rechazos_total", "counter", "Peticiones rechazadas por un límite");
  for (const auto& [limit, count] : refusals_) {
    refusals.Add(Label("limite", limit), std::to_string(count));
  }
  Metric(text, "subidas_total", "counter", "Melodías guardadas").Add({}, std::to_string(stored));
  Metric(text, "conexiones", "gauge", "Conexiones abiertas")
      .Add({}, std::to_string(gauges.connections));
  Metric(text, "almacen_disponible", "gauge", "1 si se llega al almacén de melodías")
      .Add({}, gauges.melodies ? "1" : "0");
  if (gauges.melodies) {
    Metric(text, "melodias", "gauge", "Melodías del almacén")
        .Add({}, std::to_string(*gauges.melodies));
  }
  return text;
}

}  // namespace tonadex::server
