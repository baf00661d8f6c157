#pragma once

#include <string>
#include <string_view>

// The phones and formats of the catalogue as JSON in UTF-8.
namespace tonadex::json {

// {"modelos":[{"marca":…,"modelo":…,"formato":…,"moviles":[…],"clase":…,"fichero":…,"recibe":…,"entrada":…,
// "ejemplo":…,"teclado":{…}},…]} in the catalogue's order.
std::string CatalogueJson();

// {"filas":4,"columnas":3,"teclas":[{"tecla":"1","signos":"1.","palabra":"do","fila":0,
// "columna":0},…]}; "" for a model whose result is not keys to press.
std::string KeypadJson(std::string_view model);

}  // namespace tonadex::json
