#pragma once

#include <algorithm>
#include <array>
#include <string_view>

// Which picture a button of the main window carries; how it is drawn is the shell's.
namespace tonadex::app {

struct ControlPicture {
  std::string_view control;  // its name in the table of controls
  const char* icon;          // name of the picture, the same in every shell
  bool primary = false;      // what its page is there for: the one button in the accent
};

inline constexpr auto kControlPictures =
    std::to_array<ControlPicture>({{"cmdinicio", "inicio"},
                                   {"cmdbuscar", "buscar"},
                                   {"cmdrepertorio", "repertorio"},
                                   {"cmd906", "internet"},
                                   {"cmdopciones", "opciones"},
                                   {"cmdayuda", "ayuda"},
                                   {"picabuscar", "buscar", true},
                                   {"picazar", "azar"},
                                   {"picdescargar", "bajar"},
                                   {"picreproducir", "reproducir"},
                                   {"picconvertir", "convertir", true},
                                   {"picimprimir", "imprimir"},
                                   {"cmdscuchacumpo", "reproducir"},
                                   {"cmdsubecompo", "subir"},
                                   {"cmdscuchartttl", "reproducir"},
                                   {"cmdsubirmelortttl", "subir"}});

// The picture of a control, nullptr for one without.
constexpr const ControlPicture* FindPicture(std::string_view control) {
  const auto found = std::ranges::find(kControlPictures, control, &ControlPicture::control);
  return found == kControlPictures.end() ? nullptr : &*found;
}

}  // namespace tonadex::app
