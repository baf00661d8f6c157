#include "shell/qt/widgets/web_pane.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QMessageBox>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <map>

namespace tonadex::test::web_pane_test {

using shell::WebPane;

constexpr int kSettleMs = 700;  // longer than the delay of any redirect below

// Serves pages on the loopback address and counts the requests.
class PageServer {
 public:
  PageServer() {
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      QTcpSocket* client = server_.nextPendingConnection();
      QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] { Answer(client); });
    });
  }

  std::string Address(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
  }
  int Asked(const QByteArray& path) const { return static_cast<int>(asked_.count(path)); }

  std::map<QByteArray, QByteArray> pages;  // "Location: …" as a page redirects

 private:
  void Answer(QTcpSocket* client) {
    const QList<QByteArray> request = client->readAll().split(' ');
    if (request.size() < 2) {
      return;
    }
    const QByteArray path = request[1].split('?').front();
    asked_ << path;
    QByteArray page = pages[path];
    const bool moved = page.startsWith("Location:");
    if (!moved && !page.isEmpty()) {
      page +=
          "<script>requestAnimationFrame(() => requestAnimationFrame(() =>"
          "new Image().src='/drawn'))</script>";
    }
    client->write(moved ? "HTTP/1.1 302 Found\r\n" + page + "\r\nContent-Length: 0\r\n"
                        : "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                              QByteArray::number(page.size()) + "\r\n");
    client->write("Connection: close\r\n\r\n" + (moved ? QByteArray() : page));
    client->disconnectFromHost();
  }

  QTcpServer server_;
  QList<QByteArray> asked_;
};

// Shows /start, and reloads it when a click tries to leave it, like the window.
struct ShownPane {
  ShownPane(WebPane::Kind kind, const QByteArray& start) : pane(kind) {
    server.pages = {{"/start", start}, {"/other", "<script>new Image().src='/arrived'</script>"}};
    QObject::connect(&pane, &WebPane::LeaveAttempted, [this] {
      ++attempts;
      pane.Navigate(server.Address("/start"));
    });
    pane.resize(468, 60);
    pane.show();
    pane.Navigate(server.Address("/start"));
  }
  // Whether the browser's view is shown, and not the fallback page.
  bool Shown() const { return pane.currentWidget()->inherits("QWebEngineView"); }
  void Click() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return Shown(); }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return server.Asked("/drawn") > 0; }));
    QTest::qWait(200);  // until frames have loaded
    QTest::mouseClick(pane.currentWidget()->focusProxy(), Qt::LeftButton, {}, QPoint(200, 30));
  }

  PageServer server;
  int attempts = 0;
  WebPane pane;
};

#define COVER " style='position:fixed;inset:0;width:100vw;height:100vh;display:block'"

// Pages that try to leave themselves, and those that a click tries to leave.
const std::pair<bool, QByteArray> kLeaving[] = {
    {false, "<script>location.replace('/other')</script>"},
    {false, "<meta http-equiv=refresh content='0;url=/other'>x"},
    {false, "<script>setTimeout(() => location = '/other', 200)</script>"},
    {false, "<script>setTimeout(() => location.reload(), 200)</script>"},
    {false, "<script>setInterval(() => location = '/start?1', 50)</script>"},
    {false, "<form action=/other></form><script>document.forms[0].submit()</script>"},
    {false,
     "<form action=/other method=post></form>"
     "<script>setTimeout(() => document.forms[0].submit(), 100)</script>"},
    {false, "<a href=/other>x</a><script>document.links[0].click()</script>"},
    {false, "<a href=/other target=_blank>x</a><script>document.links[0].click()</script>"},
    {false, "<script>open('/other')</script>"},
    {false, "<iframe src=/jumping></iframe>"},
    {true, "<a href=/other" COVER ">x</a>"},
    {true, "<a href=/other target=_blank" COVER ">x</a>"},
    {true, "<form action=/other><button" COVER ">x</button></form>"},
    {true,
     "<div onclick='location = \"/other\"; setTimeout(() => location = \"/other\", "
     "50)'" COVER ">x</div>"},
    {true, "<div onclick='window.open(\"/other\")'" COVER ">x</div>"},
    {true, "<iframe src=/frame" COVER "></iframe>"},
    {true, "<iframe src=/inner" COVER "></iframe>"}};

TEST(WebPane, ABannerStaysAndTellsOnceOfAClick) {
  for (const auto& [click, page] : kLeaving) {
    SCOPED_TRACE(page.toStdString());
    ShownPane t(WebPane::Kind::kBanner, page);
    t.server.pages["/frame"] = "<a href=/other target=_top" COVER ">x</a>";
    t.server.pages["/inner"] = "<a href=/other" COVER ">x</a>";
    t.server.pages["/jumping"] = "<script>top.location = '/other'</script>";
    EXPECT_TRUE(QTest::qWaitFor([&t] { return t.Shown(); }));
    if (click) {
      t.Click();
      EXPECT_TRUE(QTest::qWaitFor([&t] { return t.server.Asked("/start") == 2; }));
    }
    QTest::qWait(kSettleMs);
    EXPECT_EQ(t.server.Asked("/other"), 0);
    EXPECT_EQ(t.attempts, click ? 1 : 0);
    EXPECT_EQ(t.server.Asked("/start"), click ? 2 : 1);
    EXPECT_TRUE(t.Shown());
  }
}

TEST(WebPane, FollowsTheServersOwnRedirection) {
  ShownPane t(WebPane::Kind::kBanner, "Location: /banner");
  t.server.pages["/banner"] = "<script>new Image().src='/arrived'</script>";
  EXPECT_TRUE(QTest::qWaitFor([&t] { return t.server.Asked("/arrived") == 1; }));
}

TEST(WebPane, APageIsLeftByLinksAlsoByThoseThatWantANewWindow) {
  for (const QByteArray target : {"", "target=_blank"}) {
    ShownPane t(WebPane::Kind::kPage, "<a href=/other " + target + COVER ">x</a>");
    t.Click();
    EXPECT_TRUE(QTest::qWaitFor([&t] { return t.server.Asked("/arrived") == 1; }))
        << target.toStdString();
    EXPECT_EQ(t.attempts, 0);
  }
  ShownPane unasked(WebPane::Kind::kPage, "<script>open('/other')</script>");
  QTest::qWait(kSettleMs);
  EXPECT_EQ(unasked.server.Asked("/other"), 0);
}

// A page that objects to being left does not prevent the next one from being shown either.
TEST(WebPane, NoDialogOfAPageOpens) {
  for (const WebPane::Kind kind : {WebPane::Kind::kPage, WebPane::Kind::kBanner}) {
    bool opened = false;
    ShownPane t(kind,
                "<body onclick='new Image().src=\"/clicked\"'" COVER
                "><script>alert(1); onbeforeunload = e => { e.preventDefault(); return 'x'; };"
                "new Image().src = '/said/' + confirm(1) + prompt(1)</script>");
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&opened] {
      if (QWidget* box = QApplication::activeModalWidget()) {
        opened = true;
        box->close();
      }
    });
    watch.start(20);
    EXPECT_TRUE(QTest::qWaitFor([&t] { return t.server.Asked("/said/falsenull") == 1; }));
    t.Click();
    EXPECT_TRUE(QTest::qWaitFor([&t] { return t.server.Asked("/clicked") == 1; }));
    t.pane.Navigate(t.server.Address("/other"));
    EXPECT_TRUE(QTest::qWaitFor([&t] { return t.server.Asked("/arrived") == 1; }));
    EXPECT_FALSE(opened);
  }
}

// Whether a screen reader finds the words in the accessibility tree below `part`.
// The browser's library lacks the type information that the check of member calls needs.
[[gnu::no_sanitize("vptr")]] bool Speaks(QAccessibleInterface* part, const QString& words) {
  if (part == nullptr || part->text(QAccessible::Name).contains(words)) {
    return part != nullptr;
  }
  for (int i = 0; i < part->childCount(); ++i) {
    if (Speaks(part->child(i), words)) {
      return true;
    }
  }
  return false;
}

TEST(WebPane, ItsPagesSpeak) {
  ShownPane shown(WebPane::Kind::kPage, "<h1>Valses</h1>");
  QAccessible::setActive(true);
  EXPECT_TRUE(QTest::qWaitFor([&shown] {
    return Speaks(QAccessible::queryAccessibleInterface(shown.pane.currentWidget()), "Valses");
  }));
  QAccessible::setActive(false);
}

}  // namespace tonadex::test::web_pane_test
