#include "tests/qt_rtf/private_spooler.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

namespace tonadex::test {
namespace {

constexpr auto kModel = "/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd";
constexpr int kPatienceMs = 10'000;

QString SystemProgram(const char* name) {
  const QString found = QStandardPaths::findExecutable(name);
  return found.isEmpty() ? QStandardPaths::findExecutable(name, {"/usr/sbin", "/sbin"}) : found;
}

template <typename Condition>
bool Until(Condition condition) {
  QElapsedTimer waited;
  waited.start();
  while (!condition()) {
    if (waited.hasExpired(kPatienceMs)) {
      return false;
    }
    QThread::msleep(20);
  }
  return true;
}

}  // namespace

bool PrivateSpooler::Installed() {
  return !SystemProgram("cupsd").isEmpty() && !SystemProgram("lpadmin").isEmpty() &&
         QFile::exists(kModel);
}

PrivateSpooler::PrivateSpooler() {
  WriteSettings();
  qputenv("CUPS_SERVER", QFile::encodeName(Path("run/cups.sock")));
  server_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  server_.start(SystemProgram("cupsd"),
                {"-f", "-c", Path("cupsd.conf"), "-s", Path("cups-files.conf")});
  running_ = server_.waitForStarted() && Until([this] {
               return server_.state() == QProcess::Running &&
                      OutputOf(SystemProgram("lpstat"), {"-r"}).contains("is running");
             });
}

PrivateSpooler::~PrivateSpooler() {
  server_.terminate();
  if (!server_.waitForFinished(kPatienceMs)) {
    server_.kill();
    server_.waitForFinished();
  }
}

QString PrivateSpooler::Path(const char* name) const {
  return QString::fromStdString((folder_ / name).string());
}

void PrivateSpooler::WriteSettings() const {
  const std::string root = folder_.path().string();
  for (const char* name : {"out", "run", "spool", "spool/tmp", "cache", "etc", "etc/ppd"}) {
    std::filesystem::create_directories(folder_ / name);
  }
  // The filters of a server that root started run as another user.
  std::filesystem::permissions(folder_.path(), std::filesystem::perms{0755});
  folder_.Write("cupsd.conf", "Listen " + root +
                                  "/run/cups.sock\n"
                                  "DefaultAuthType None\nWebInterface No\nBrowsing No\n"
                                  "LogLevel debug\n"
                                  "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                                  "<Policy default>\n  <Limit All>\n    Order allow,deny\n"
                                  "    Allow all\n  </Limit>\n</Policy>\n");
  folder_.Write("cups-files.conf", "FileDevice Yes\nSandboxing relaxed\nServerRoot " + root +
                                       "/etc\nRequestRoot " + root + "/spool\nTempDir " + root +
                                       "/spool/tmp\nCacheDir " + root + "/cache\nStateDir " + root +
                                       "/run\nErrorLog " + root + "/error.log\nAccessLog " + root +
                                       "/access.log\nPageLog " + root + "/page.log\n");
}

bool PrivateSpooler::AddQueue(const QString& name) const {
  const QString device = "file:" + Path("out/") + name + ".pdf";
  return QProcess::execute(SystemProgram("lpadmin"),
                           {"-p", name, "-v", device, "-P", kModel, "-E"}) == 0;
}

void PrivateSpooler::MakeDefault(const QString& name) const {
  QProcess::execute(SystemProgram("lpadmin"), {"-d", name});
}

void PrivateSpooler::Reject(const QString& name) const {
  QProcess::execute(SystemProgram("cupsreject"), {name});
}

QString PrivateSpooler::WaitForJob(const QString& queue) const {
  const QString job = Path("out/") + queue + ".pdf";
  const bool done = Until(
      [&] { return QFile::exists(job) && OutputOf(SystemProgram("lpstat"), {"-o"}).isEmpty(); });
  return done ? job : QString();
}

QString PrivateSpooler::Log() const {
  return QString::fromStdString(folder_.Read("error.log")).right(4000);
}

QString OutputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  process.waitForFinished(kPatienceMs);
  return QString::fromUtf8(process.readAllStandardOutput());
}

}  // namespace tonadex::test
