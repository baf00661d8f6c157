#include "platform/qt/rich_text_box.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDir>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLibrary>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStandardPaths>
#include <QTextDocument>
#include <algorithm>

#include "app/pdf.h"
#include "app/print_sheet.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/read.h"
#include "files/write.h"
#include "platform/qt/text_document.h"
#include "rtf/rtf_reader.h"

namespace tonadex::platform {
namespace {

using core::literals::operator""_w;

constexpr auto kDocumentName = "Tonadex";
constexpr int kPdfDotsPerInch = 1200;
constexpr int kTwipsPerPoint = 20;
constexpr int kSmallestText = 1440;  // twips; minimum width and height between the margins

QString ToQString(std::string_view text) {
  return QString::fromStdString(core::ToUtf8(text));
}

std::string FromQString(const QString& text) {
  return core::FromUtf8(text.toStdString());
}

[[noreturn]] void Fail(std::string_view why, const QString& what) {
  throw core::RunTimeError(core::ErrorNumber::kDeviceFailure,
                           std::string(why) + FromQString(what) + std::string(u8"»"_w));
}

// The page's margins, or the default ones when they leave too little space for text.
QMarginsF MarginsOf(const rtf::Page& page) {
  const bool fits = page.left + page.right <= page.width - kSmallestText &&
                    page.top + page.bottom <= page.height - kSmallestText;
  const rtf::Page from = fits ? page : rtf::Page{};
  return QMarginsF(from.left, from.top, from.right, from.bottom) / kTwipsPerPoint;
}

QPageSize SizeOf(const rtf::Page& page) {
  const QSizeF points =
      QSizeF(std::min(page.width, page.height), std::max(page.width, page.height));
  return QPageSize(points / kTwipsPerPoint, QPageSize::Point, {}, QPageSize::FuzzyMatch);
}

// The sheet's margins, enlarged to the printer's printable area.
QPageLayout LayoutOf(const rtf::Page& page, const QPageSize& paper, const QMarginsF& smallest) {
  const QMarginsF margins = MarginsOf(page);
  const auto direction = page.width > page.height ? QPageLayout::Landscape : QPageLayout::Portrait;
  return QPageLayout(
      paper, direction,
      {std::max(margins.left(), smallest.left()), std::max(margins.top(), smallest.top()),
       std::max(margins.right(), smallest.right()), std::max(margins.bottom(), smallest.bottom())},
      QPageLayout::Point, smallest);
}

void DrawPage(QPainter& painter, const QTextDocument& document, const QRectF& page) {
  constexpr double kEdge = 0.1;  // a line that only touches the page belongs to the next one
  QAbstractTextDocumentLayout::PaintContext paint;
  paint.clip = page.adjusted(0, kEdge, 0, -kEdge);
  paint.palette.setColor(QPalette::Text, Qt::black);
  painter.save();
  painter.translate(-page.topLeft());
  painter.setClipRect(paint.clip);
  document.documentLayout()->draw(&painter, paint);
  painter.restore();
}

// Draws every page within the device's margins. False on an error of the device.
bool DrawPages(QPagedPaintDevice& device, const rtf::Document& source) {
  QTextDocument document;
  document.setUseDesignMetrics(true);
  FillTextDocument(document, source);
  document.setDocumentMargin(0);
  const double dots = DotsPerInch();
  const QSizeF area = device.pageLayout().paintRect(QPageLayout::Point).size() * dots / 72;
  document.setPageSize(area + QSizeF(1, 0));  // paper sizes are rounded to points, tabs are not
  QPainter painter;
  if (!painter.begin(&device)) {
    return false;
  }
  painter.scale(device.logicalDpiX() / dots, device.logicalDpiY() / dots);
  const int pages = document.pageCount();
  for (int page = 0; page < pages; ++page) {
    if (page > 0 && !device.newPage()) {
      return false;
    }
    DrawPage(painter, document, QRectF(QPointF(0, page * area.height()), area));
  }
  return painter.end();
}

// Whether the spooler refused the last job; Qt does not report that.
bool SpoolerRefused() {
  using LastError = int (*)();
  constexpr int kFirstError = 0x400;
  QLibrary spooler("cups", 2);
  const auto lastError = reinterpret_cast<LastError>(spooler.resolve("cupsLastError"));
  return lastError != nullptr && lastError() >= kFirstError;
}

QMarginsF SmallestMargins(QPageLayout layout) {
  layout.setUnits(QPageLayout::Point);
  return layout.minimumMargins();
}

void CheckPrinted(bool drawn, const QPrinter& printer) {
  if (!drawn || printer.printerState() == QPrinter::Error || SpoolerRefused()) {
    Fail(u8"no se puede imprimir en la impresora «"_w, printer.printerName());
  }
}

void PrintOn(const QPrinterInfo& info, const rtf::Document& source, const QString& name) {
  QPrinter printer(info, QPrinter::HighResolution);
  printer.setDocName(name);
  const QPageSize wanted = SizeOf(source.page);
  const QPageLayout usual = printer.pageLayout();
  const bool supported = info.supportedPageSizes().contains(wanted);
  printer.setPageLayout(
      LayoutOf(source.page, supported ? wanted : usual.pageSize(), SmallestMargins(usual)));
  CheckPrinted(DrawPages(printer, source), printer);
}

std::string PdfBytes(const rtf::Document& source) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setTitle(kDocumentName);
    writer.setCreator(kDocumentName);
    writer.setResolution(kPdfDotsPerInch);
    writer.setPageLayout(LayoutOf(source.page, SizeOf(source.page), {}));
    if (!DrawPages(writer, source)) {
      Fail(u8"no se puede componer la hoja «"_w, kDocumentName);
    }
  }
  return buffer.data().toStdString();
}

void SaveNewPdf(std::string_view name, std::string_view bytes) {
  const QDir documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  const QString file = documents.filePath(ToQString(name) + ".pdf");
  app::SaveSheet(file.toStdU16String(), bytes);
}

void PaintShape(QPainter& painter, const app::Shape& shape) {
  const QRectF box(shape.box.x, shape.box.y, shape.box.width, shape.box.height);
  const QColor ink = shape.ink == app::Ink::kText ? Qt::black : Qt::gray;
  if (shape.kind == app::Shape::Kind::kFilled) {
    painter.fillRect(box, ink);
    return;
  }
  painter.setPen(QPen(ink, shape.size));
  if (shape.kind == app::Shape::Kind::kFrame) {
    painter.drawRoundedRect(box, shape.radius, shape.radius);
    return;
  }
  QFont font(shape.mono ? "monospace" : "sans-serif");
  font.setStyleHint(shape.mono ? QFont::Monospace : QFont::SansSerif);
  font.setBold(shape.bold);
  constexpr int kFine = 100;  // set in large type, which has no rounded widths, and drawn smaller
  font.setPixelSize(kFine);
  const QString text = ToQString(shape.text);
  const double width = QFontMetricsF(font).horizontalAdvance(text);
  const double scale = std::min(shape.size / kFine, box.width() / std::max(1.0, width));
  painter.save();
  painter.setFont(font);
  painter.translate(box.topLeft());
  painter.scale(scale, scale);
  painter.drawText(QRectF(QPointF(), box.size() / scale), Qt::AlignVCenter | Qt::TextDontClip,
                   text);
  painter.restore();
}

// False when the device fails.
bool DrawPages(QPrinter& device, const app::Paper& paper) {
  QPainter painter;
  if (!painter.begin(&device)) {
    return false;
  }
  const QRectF page = device.pageLayout().fullRect(QPageLayout::Point);
  const double fits = std::min(page.width() / paper.width, page.height() / paper.height);
  painter.scale(fits * device.logicalDpiX() / 72, fits * device.logicalDpiY() / 72);
  for (std::size_t i = 0; i < paper.pages.size(); ++i) {
    if (i > 0 && !device.newPage()) {
      return false;
    }
    for (const app::Shape& shape : paper.pages[i]) {
      PaintShape(painter, shape);
    }
  }
  return painter.end();
}

class WindowlessRichTextBox : public QtRichTextBox {
 public:
  using QtRichTextBox::QtRichTextBox;

  void SelPrint(std::string_view name) override {
    if (QCoreApplication::instance() != nullptr) {
      QtRichTextBox::SelPrint(name);
      return;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    int count = 1;
    char program[] = "tonadex-cli";
    char* arguments[] = {program, nullptr};
    const QGuiApplication application(count, arguments);
    QtRichTextBox::SelPrint(name);
  }
};

}  // namespace

void QtRichTextBox::LoadFile(const std::filesystem::path& file) {
  source_ = files::ReadBytes(file);
}

void QtRichTextBox::SelPrint(std::string_view name) {
  const rtf::Document document = rtf::ReadRtf(source_);
  if (!target_.pdf.empty()) {
    files::WriteBytes(target_.pdf, PdfBytes(document));
    return;
  }
  const QPrinterInfo printer = target_.printer.empty()
                                   ? QPrinterInfo::defaultPrinter()
                                   : QPrinterInfo::printerInfo(ToQString(target_.printer));
  if (!printer.isNull()) {
    PrintOn(printer, document, ToQString(name));
  } else if (target_.printer.empty()) {
    SaveNewPdf(name, PdfBytes(document));
  } else {
    Fail(u8"no existe la impresora «"_w, ToQString(target_.printer));
  }
}

void QtRichTextBox::PrintPages(const app::Paper& paper, std::string_view name) {
  const QPrinterInfo info = QPrinterInfo::defaultPrinter();
  if (info.isNull()) {
    SaveNewPdf(name, app::PdfFile(paper));
    return;
  }
  QPrinter printer(info, QPrinter::HighResolution);
  printer.setDocName(ToQString(name));
  printer.setFullPage(true);
  printer.setPageSize(
      QPageSize(QSizeF(paper.width, paper.height), QPageSize::Point, {}, QPageSize::FuzzyMatch));
  CheckPrinted(DrawPages(printer, paper), printer);
}

std::unique_ptr<app::RichTextBox> MakeWindowlessRichTextBox(PrintTarget target) {
  return std::make_unique<WindowlessRichTextBox>(std::move(target));
}

}  // namespace tonadex::platform
