// Prints the clipboard's text, read by a separate program on the same display.
#include <QClipboard>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  std::fputs(qPrintable(QGuiApplication::clipboard()->text()), stdout);
  return 0;
}
