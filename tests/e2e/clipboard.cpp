// Writes the clipboard's text to the standard output, as another program on the same display would.
#include <QClipboard>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  std::fputs(qPrintable(QGuiApplication::clipboard()->text()), stdout);
  return 0;
}
