#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QTranslator>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/qt/desktop.h"
#include "shell/qt/theme/system_scheme.h"
#include "shell/qt/theme/theme.h"

namespace {

constexpr int kNoDisplay = 3;  // exit code; a script can then start the terminal program
constexpr int kBadArguments = 2;

// Qt aborts when it finds no screen; this says why and exits with a code of its own.
void ReportNoDisplay(QtMsgType type, const QMessageLogContext&, const QString&) {
  if (type == QtFatalMsg) {
    std::fputs(
        "Tonadex necesita una pantalla y no la encuentra.\n"
        "Abre una sesión de escritorio o usa el programa de terminal: tonadex-cli --help\n",
        stderr);
    std::_Exit(kNoDisplay);
  }
}

bool Has(int argc, char** argv, std::string_view argument) {
  return std::find(argv, argv + argc, argument) != argv + argc;
}

void PrepareEnvironment(int argc, char** argv) {
  if (Has(argc, argv, "--ayuda") || Has(argc, argv, "-h")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");  // the help needs no screen
  }
  // The browser's sandbox refuses to work for root; for everyone else it stays on.
  if (geteuid() == 0) {
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  }
}

// Words of the file dialog that Qt's Spanish translation lacks.
class FileKinds : public QTranslator {
 public:
  using QTranslator::QTranslator;

  bool isEmpty() const override { return false; }

  QString translate(const char* context, const char* text, const char*, int) const override {
    if (std::string_view(context) != "QAbstractFileIconProvider") {
      return {};
    }
    const std::string_view kind = text;
    return kind == "Folder"    ? QStringLiteral("Carpeta")
           : kind == "%1 File" ? QStringLiteral("Fichero %1")
           : kind == "File"    ? QStringLiteral("Fichero")
           : kind == "Drive"   ? QStringLiteral("Unidad")
                               : QString();
  }
};

void LoadTranslations(QApplication& application) {
  QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
  auto* translator = new QTranslator(&application);
  if (translator->load(QStringLiteral("qtbase_es"),
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(translator);
  }
  QCoreApplication::installTranslator(new FileKinds(&application));
}

}  // namespace

int main(int argc, char** argv) {
  if (Has(argc, argv, "--version")) {
    std::puts("tonadex " TONADEX_VERSION);
    return 0;
  }
  PrepareEnvironment(argc, argv);
  qInstallMessageHandler(ReportNoDisplay);
  QApplication application(argc, argv);
  qInstallMessageHandler(nullptr);
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
  QCoreApplication::setApplicationName(QStringLiteral("tonadex"));
  QCoreApplication::setApplicationVersion(QStringLiteral(TONADEX_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("tonadex"));
  LoadTranslations(application);

  QCommandLineParser arguments;
  arguments.setApplicationDescription(
      QStringLiteral("Melodías para móviles de antes: buscar, escuchar, convertir e imprimir."));
  const QCommandLineOption server(
      QStringLiteral("servidor"),
      QStringLiteral("Dirección del servidor de melodías; sin ella, el del programa."),
      QStringLiteral("URL"));
  const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("ayuda")},
                                QStringLiteral("Muestra esta ayuda."));
  const QCommandLineOption version(QStringLiteral("version"),
                                   QStringLiteral("Muestra la versión."));
  arguments.addOptions({server, version, help});
  arguments.addPositionalArgument(QStringLiteral("ficheros"),
                                  QStringLiteral("Melodías de cualquier formato, para abrirlas."),
                                  QStringLiteral("[FICHERO…]"));
  const bool understood = arguments.parse(QCoreApplication::arguments());
  if (arguments.isSet(help)) {
    std::fputs(qPrintable(arguments.helpText()), stdout);
    return 0;
  }
  if (!understood) {
    std::fprintf(stderr, "%s\n%s", qPrintable(arguments.errorText()),
                 qPrintable(arguments.helpText()));
    return kBadArguments;
  }

  QApplication::setQuitOnLastWindowClosed(false);
  const auto applyTheme = [&application] {
    tonadex::shell::ApplyTheme(application, tonadex::shell::SystemPrefersDark());
  };
  applyTheme();
  const tonadex::shell::SchemeWatcher follow(applyTheme);
  if (tonadex::shell::CurrentTheme().dark &&
      qEnvironmentVariableIsEmpty("QTWEBENGINE_CHROMIUM_FLAGS")) {
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--force-dark-mode");  // pages that know dark colours
  }
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/shell/tonadex.svg")));
  std::vector<std::filesystem::path> files;
  for (const QString& file : arguments.positionalArguments()) {
    files.emplace_back(file.toStdU16String());
  }
  tonadex::shell::Desktop desktop(arguments.value(server).toStdString(), std::move(files));
  return desktop.Run();
}
