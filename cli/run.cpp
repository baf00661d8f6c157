#include "cli/commands.h"
#include "terminal/arguments.h"

namespace tonadex::cli {
namespace {

using terminal::Command;
using terminal::Option;

// Splits "--option=" into the option and an empty value; CLI11 would take the next argument as the
// value.
std::vector<std::string> SplitArguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    arguments.emplace_back(argv[i]);
    if (arguments.back().starts_with("--") && arguments.back().ends_with('=')) {
      arguments.back().pop_back();
      arguments.emplace_back();
    }
  }
  return arguments;
}

int Do(Context& context, const Arguments& arguments, CommandFunction command) {
  try {
    Attempt(context, [&] { command(context, arguments); });
  } catch (const std::exception& error) {
    Fail(context, {ExitCode::kSystemFailed, "error inesperado: " + WordsOf(error)});
  }
  if (!context.out.flush()) {
    Fail(context, {ExitCode::kSystemFailed, "no se puede escribir el resultado"});
  }
  return static_cast<int>(context.exitCode);
}

// All commands: name, help, options, function.
std::vector<Command> Commands(Context& context, Arguments& a, const HeavyCommands& heavy) {
  const auto doing = [&](CommandFunction command) {
    return [&context, &a, command] { return Do(context, a, command); };
  };
  const Option phone = {"-t,--telefono", "NOMBRE",
                        "Móvil o formato: 3310, \"Nokia 3310\", t68i, imelody", &a.phone};
  const Option model = {"-m,--modelo", "TEXTO", "Texto exacto del modelo en el catálogo", &a.model};
  const Option file = {"fichero", "FICHERO", "Melodía RTTTL; \"-\" es la entrada estándar", &a.file,
                       true};
  const Option files = {"ficheros", "FICHERO", "Melodías RTTTL; \"-\" es la entrada estándar",
                        &a.words};
  const Option json = {"--json", "", "En JSON", &a.json};
  const Option server = {"--servidor", "URL", "Dirección del servidor (http://… o https://…)",
                         &a.server};
  return {
      {"modelos",
       "Lista las marcas y modelos del catálogo",
       {{"--marca", "MARCA", "Solo los de esta marca", &a.brand}, json},
       doing(ListModels)},
      {"convertir",
       "Convierte melodías al formato de un móvil (título, resultado y avisos)",
       {phone,
        model,
        {"-f,--formato", "FORMATO", "Formato del fichero: ott, imy, mid, wav…", &a.format},
        {"--todos", "", "Convierte para todos los modelos del catálogo", &a.allModels},
        {"--fila", "TEXTO", "Nombre de la melodía en el título", &a.row},
        {"-o,--salida", "FICHERO", "Fichero en el que grabar el resultado", &a.output},
        {"--json", "", "Un objeto JSON por melodía y modelo", &a.json},
        {"--pasos", "", "Paso a paso lo que hay que pulsar en el móvil", &a.steps},
        {"--solo-resultado", "", "Muestra solo el resultado", &a.resultOnly},
        {"--lineas", "", "Cada línea es una melodía: un objeto JSON por línea, en orden", &a.lines},
        files},
       doing(Convert),
       "Con --formato se leen ficheros de cualquier formato, y varias melodías van a una carpeta.\n"
       "Un nombre que no existe muestra los formatos que hay."},
      {"importar",
       "Lee melodías de ficheros de cualquier formato: escribe una por línea en RTTTL",
       {{"--al-repertorio", "", "Las guarda en el repertorio y escribe sus ficheros",
         &a.intoRepertoire},
        {"--pistas", "", "Muestra las voces de un fichero MIDI", &a.voices},
        {"--pista", "N", "Voz del fichero MIDI, en vez de la que parece la melodía", &a.voice},
        {"--desde", "COMPÁS", "Primer compás del fichero MIDI, contando desde 1", &a.firstBar},
        {"--notas", "N", "Notas y pausas que se toman como mucho del fichero MIDI", &a.mostNotes},
        phone,
        model,
        {"ficheros", "FICHERO",
         "MIDI, RTTTL, OTT, SMS de Nokia, iMelody, EMelody, MDY, KWS, compositor o teclas; \"-\" "
         "es "
         "la entrada estándar",
         &a.words}},
       doing(Import),
       "El formato se reconoce por el contenido, no por el nombre. De un fichero MIDI se toman "
       "con\n"
       "--telefono las notas que caben en el móvil y en sus octavas. Lo que una melodía pierde "
       "por\n"
       "el camino se muestra en la salida de errores."},
      {"comprobar", "Dice qué está mal en una melodía RTTTL", {files}, doing(Check)},
      {"arreglar",
       "Arregla melodías copiadas de cualquier sitio: escribe una por línea",
       {json, files},
       doing(Repair),
       "Los cambios se muestran en la salida de errores o, con --json, en \"cambios\"."},
      {"transportar",
       "Sube o baja el tono de melodías: escribe una por línea",
       {{"-s,--semitonos", "N", "De -36 a 36; 12 es una octava más aguda, -12 una más grave",
         &a.semitones, true},
        files},
       doing(Transpose)},
      {"midi",
       "Graba una melodía como fichero MIDI",
       {file, {"-o,--salida", "SALIDA", "Fichero MIDI de salida", &a.output, true}},
       doing(SaveMidi)},
#ifndef _WIN32
      {"reproducir",
       "Toca una melodía",
       {file,
        {"--pitido", "", "Suena como el zumbador de un móvil", &a.beep},
        {"--instrumento", "", "Suena el instrumento; sin ninguno, lo elegido en Opciones",
         &a.instrument},
        {"--wav", "SALIDA", "La graba como fichero de sonido, sin tocarla", &a.wav}},
       doing(heavy.play),
       "Ctrl+C la para al instante (código de salida 130). Una melodía con errores se toca\n"
       "hasta donde se entiende, pero no se graba; el código es 1."},
#endif
      {"buscar",
       "Busca melodías en el servidor",
       {{"palabras", "PALABRA", "Palabras del nombre; sin ninguna salen las más nuevas", &a.words},
        server,
        json},
       doing(Search)},
      {"azar", "Muestra unas melodías del servidor al azar", {server, json}, doing(ListRandom)},
      {"descargar",
       "Descarga melodías del servidor al repertorio",
       {{"melodias", "MELODIA", "Nombre.número, como lo muestra buscar", &a.words, true},
        server,
        {"--carpeta", "CARPETA", "Carpeta en la que se guardan", &a.folder}},
       doing(Download),
       "Lo que una descarga sustituye queda en «papelera», al lado del repertorio o dentro de\n"
       "--carpeta."},
      {"subir", "Sube melodías RTTTL al servidor", {files, server}, doing(Upload)},
      {"imprimir",
       "Imprime la hoja de una melodía convertida, para guardarla junto al móvil",
       {phone,
        model,
        {"--pdf", "SALIDA", "Escribe un PDF en vez de imprimir", &a.pdf},
        {"--impresora", "NOMBRE", "Impresora, en vez de la predeterminada", &a.printer},
        file},
       doing(heavy.print)},
  };
}

}  // namespace

int Run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
        const HeavyCommands& heavy) {
  Context context{in, out, err};
  Arguments arguments;
  arguments.typed = argv;
  const terminal::Program program = {
      {"tonadex-cli",
       "Tonadex en el terminal: melodías RTTTL para móviles de antes.",
       {},
       {},
       "Códigos de salida: 0 hecho, 1 la melodía no se puede convertir, 2 uso incorrecto,\n"
       "3 ha fallado un fichero o el sistema."},
      Commands(context, arguments, heavy)};
  return terminal::Run(program, SplitArguments(argc, argv), out, err);
}

}  // namespace tonadex::cli
