#pragma once

#include <QProcess>
#include <QString>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace tonadex::test {

// A print server of its own, on a socket in a folder that goes away with it. Whoever runs it needs
// no right over the machine's printers. Make it before anything asks for printers: the client
// library reads where the server is only once.
class PrivateSpooler {
 public:
  PrivateSpooler();
  ~PrivateSpooler();

  // Whether the machine has the print server at all.
  static bool Installed();
  // False when the server does not answer; Log() says why.
  bool Running() const { return running_; }

  // A queue whose jobs end up in the file Job(name).
  bool AddQueue(const QString& name) const;
  void MakeDefault(const QString& name) const;
  void Reject(const QString& name) const;

  // Waits for a job and gives the path of the PDF that arrived, empty after ten seconds.
  QString WaitForJob(const QString& queue) const;
  QString Log() const;

 private:
  QString Path(const char* name) const;
  void WriteSettings() const;

  TempFolder folder_;
  QProcess server_;
  bool running_ = false;
};

// What a program prints on its standard output.
QString OutputOf(const QString& program, const QStringList& arguments);

}  // namespace tonadex::test
