#include "server/pages.h"

#include "core/text.h"
#include "core/version.h"
#include "core/windows1252.h"
#include "net/listing.h"
#include "server/limits.h"

namespace tonadex::server {
namespace {

constexpr std::string_view kHead = R"html(<!DOCTYPE html>
<html lang="es">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Tonadex</title>
<style>
:root { color-scheme: light dark; --ground: #f4f6f3; --card: #ffffff; --text: #1b211e;
  --soft: #575c59; --accent: #17684a; --line: #c8cbc8; --display: #c9dab2; --ink: #101f10; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #1b1f1d; --card: #242926; --text: #e7ebe8; --soft: #b1b5b3;
    --accent: #5cc49a; --line: #4b4f4d; --display: #0f1a10; --ink: #c2e2ab; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--ground); color: var(--text);
  font: 14px/1.5 "Segoe UI", "Noto Sans", "DejaVu Sans", Verdana, sans-serif; }
main { max-width: 752px; margin: 0 auto; padding: 24px 16px 32px; }
h1 { margin: 0; color: var(--accent); font-size: 28px; line-height: 1.2; }
h2 { margin: 0 0 8px; color: var(--accent); font-size: 18px; line-height: 1.3; }
p { margin: 0 0 8px; }
.soft { color: var(--soft); }
.grid { display: grid; grid-template-columns: repeat(auto-fit, minmax(300px, 1fr)); gap: 16px;
  margin-top: 16px; }
.card { background: var(--card); border: 1px solid var(--line); border-radius: 8px; padding: 16px;
  overflow-wrap: anywhere; }
.display { margin-top: 16px; padding: 16px; border-radius: 12px; background: var(--display);
  color: var(--ink); font: 18px/1.6 "DejaVu Sans Mono", Consolas, monospace;
  overflow-wrap: anywhere; }
.wide { grid-column: 1 / -1; }
.card .soft { margin: 8px 0 0; }
ol, ul { margin: 0; padding-left: 20px; }
li { margin: 4px 0; }
table { border-collapse: collapse; }
td { padding: 4px 16px 4px 0; vertical-align: top; }
td:first-child, code { font-family: "DejaVu Sans Mono", Consolas, monospace; white-space: nowrap; }
)html";

constexpr std::string_view kBody = "</style>\n</head>\n<body>\n";
constexpr std::string_view kEnd = "</body>\n</html>\n";

// One line that drops items from the right in a narrow window; never higher than the banner.
constexpr std::string_view kBannerStyle = R"html(
html, body { height: 44px; overflow: hidden; }
.banner { display: flex; align-items: center; gap: 16px; height: 44px; max-width: 720px;
  margin: 0 auto; padding: 0;
  white-space: nowrap; overflow: hidden; }
.banner h1 { font-size: 18px; }
.banner .display { margin: 0; padding: 4px 12px; border-radius: 8px; flex: none;
  font-size: 14px; }
.banner .soft { overflow: hidden; text-overflow: ellipsis; min-width: 0; }
)html";

constexpr std::string_view kSteps = R"html(<section class="card">
<h2>En tres pasos</h2>
<ol>
<li><b>Opciones:</b> elige la marca y el modelo de tu móvil.</li>
<li><b>Buscar:</b> escribe una palabra del título y descarga la melodía.</li>
<li><b>Repertorio:</b> escúchala, conviértela y pásala a tu móvil.</li>
</ol>
</section>
)html";

constexpr std::string_view kRtttlGuide = R"html(<section class="card wide">
<h2>Así se escribe una melodía</h2>
<table>
<tr><td>d=4</td><td>la duración de las notas que no dicen otra: 1, 2, 4, 8, 16 o 32</td></tr>
<tr><td>o=5</td><td>la octava de las notas que no dicen otra: de 4 a 7</td></tr>
<tr><td>b=120</td><td>el tempo, en negras por minuto</td></tr>
<tr><td>8c#.6</td><td>corchea, do sostenido, con puntillo, octava 6</td></tr>
<tr><td>p</td><td>un silencio</td></tr>
</table>
<p class="soft">Do, re, mi, fa, sol, la, si se escriben c, d, e, f, g, a, b.</p>
</section>
<section class="card">
<h2>Comparte las tuyas</h2>
<ul>
<li>Ponle un nombre corto, sin puntos ni comillas: por él la buscarán los demás.</li>
<li>Escúchala en la página Inicio antes de subirla.</li>
<li>Sube solo lo que puedas compartir: tus melodías y las que ya son de todos.</li>
<li>Una melodía subida no se cambia; con otro nombre puedes subir otra versión.</li>
</ul>
</section>
)html";

std::string Escaped(std::string_view text) {
  std::string html = core::ToUtf8(text);
  core::ReplaceAll(html, "&", "&amp;");  // first: the other replacements insert "&"
  core::ReplaceAll(html, "<", "&lt;");
  core::ReplaceAll(html, ">", "&gt;");
  core::ReplaceAll(html, "\"", "&quot;");
  return html;
}

// "12.345", with the Spanish thousands separator.
std::string Grouped(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) {
    at -= 3;
    digits.insert(at, 1, '.');
  }
  return digits;
}

std::string CountWords(std::size_t melodies) {
  return melodies == 1 ? "1 melodía" : Grouped(melodies) + " melodías";
}

std::string NewsCard(const Store& store) {
  std::string items;
  const std::string listing = store.Search({}, {}, kNewsRecords);
  for (std::string_view rest = listing; !rest.empty();) {
    items += "<li>" + Escaped(rest.substr(0, rest.find(" ("))) + "</li>\n";
    rest.remove_prefix(rest.find(net::kRecordEnd) + net::kRecordEnd.size());
  }
  return "<section class=\"card\">\n<h2>Lo último que ha llegado</h2>\n" +
         (items.empty() ? "<p class=\"soft\">Todavía no hay melodías. Sube la primera.</p>\n"
                        : "<ul>\n" + items + "</ul>\n") +
         "</section>\n";
}

std::string VersionSentence(std::string_view version) {
  const std::string current = Escaped(TONADEX_VERSION);
  if (version.empty()) {
    return "La versión actual es la " + current + ".";
  }
  if (core::IsOlderVersion(version, TONADEX_VERSION)) {
    return "Hay una versión nueva, la " + current + ". Tú tienes la " + Escaped(version) + ".";
  }
  return "Tienes la última versión (" + Escaped(version) + ").";
}

std::string Page(std::string_view style, const std::string& content) {
  std::string page(kHead);
  return page.append(style).append(kBody).append(content).append(kEnd);
}

}  // namespace

std::string BannerPage(const Store& store) {
  return Page(kBannerStyle,
              "<div class=\"banner\"><h1>Tonadex</h1><div class=\"display\">&#9834; " +
                  CountWords(store.size()) +
                  "</div><div class=\"soft\">Busca una, llévala a tu móvil y comparte las tuyas."
                  "</div></div>\n");
}

std::string InternetPage(const Store& store) {
  return Page({},
              "<main>\n<h1>Melodías de todos</h1>\n"
              "<div class=\"display\">Tema:d=4,o=5,b=120:c,8d#,8e.6,2p,g</div>\n"
              "<div class=\"grid\">\n" +
                  std::string(kRtttlGuide) + NewsCard(store) + "</div>\n</main>\n");
}

std::string StartPage(const Store& store, std::string_view version) {
  return Page({},
              "<main>\n<h1>Tonadex</h1>\n<p class=\"soft\">Melodías para los móviles de "
              "siempre.</p>\n<div class=\"display\">&#9834; " +
                  CountWords(store.size()) + " en el servidor<br>" + VersionSentence(version) +
                  "</div>\n<div class=\"grid\">\n" + std::string(kSteps) + NewsCard(store) +
                  "</div>\n</main>\n");
}

}  // namespace tonadex::server
