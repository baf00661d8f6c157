#include "platform/win32/rich_text_box.h"

#include <richedit.h>
#include <shlobj.h>
#include <winspool.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "app/pdf.h"
#include "app/print_sheet.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "platform/win32/rich_edit.h"
#include "platform/win32/send.h"
#include "platform/win32/wide_text.h"

namespace tonadex::platform {
namespace {

using namespace core::literals;
using core::ErrorNumber;
using core::RunTimeError;

constexpr int kTwipsPerInch = 1440;
constexpr int kUnitsPerPoint = 20;  // of the pages of shapes
constexpr UINT kUtf16 = 1200;       // number of the code page

constexpr std::string_view kNoAnswer = "la impresora no responde";

// "" when there is no printer.
std::wstring DefaultPrinter() {
  DWORD size = 0;
  GetDefaultPrinterW(nullptr, &size);
  std::wstring name(size, L'\0');
  return size != 0 && GetDefaultPrinterW(name.data(), &size) != 0 ? name : std::wstring();
}

void SaveSheet(std::string_view name, std::string_view bytes) {
  wchar_t* documents = nullptr;
  SHGetKnownFolderPath(FOLDERID_Documents, KF_FLAG_CREATE, nullptr, &documents);
  const std::filesystem::path folder(documents == nullptr ? L"" : documents);
  CoTaskMemFree(documents);
  app::SaveSheet(folder / files::PathFromText(name), bytes);
}

class PrinterContext {
 public:
  explicit PrinterContext(const std::wstring& name)
      : context_(CreateDCW(L"WINSPOOL", name.c_str(), nullptr, nullptr)) {
    if (context_ == nullptr) {
      throw RunTimeError(ErrorNumber::kDeviceFailure, std::string(kNoAnswer));
    }
  }
  ~PrinterContext() { DeleteDC(context_); }
  PrinterContext(const PrinterContext&) = delete;
  PrinterContext& operator=(const PrinterContext&) = delete;

  HDC get() const { return context_; }
  RECT Page() const { return {0, 0, Twips(HORZRES, LOGPIXELSX), Twips(VERTRES, LOGPIXELSY)}; }

 private:
  LONG Twips(int pixels, int pixelsPerInch) const {
    return MulDiv(GetDeviceCaps(context_, pixels), kTwipsPerInch,
                  GetDeviceCaps(context_, pixelsPerInch));
  }
  HDC context_ = nullptr;
};

LONG TextLength(HWND control) {
  GETTEXTLENGTHEX want{GTL_NUMCHARS | GTL_PRECISE, kUtf16};
  return static_cast<LONG>(Send(control, EM_GETTEXTLENGTHEX, &want));
}

// Prints page by page; stops when the control makes no progress, which would be an endless loop.
bool PrintText(HWND control, const PrinterContext& printer) {
  FORMATRANGE range{};
  range.hdc = range.hdcTarget = printer.get();
  range.rcPage = printer.Page();
  const LONG end = TextLength(control);
  bool good = true;
  for (LONG next = 0; good && next < end;) {
    range.rc = printer.Page();
    range.chrg = {next, -1};
    good = StartPage(printer.get()) > 0;
    const LONG reached = static_cast<LONG>(Send(control, EM_FORMATRANGE, TRUE, &range));
    good = good && EndPage(printer.get()) > 0;
    if (reached <= next) {
      break;
    }
    next = reached;
  }
  Send(control, EM_FORMATRANGE, FALSE);  // frees its cache
  return good;
}

// Runs `pages` as one job of the printer.
template <typename Pages>
void PrintJob(const PrinterContext& printer, const std::wstring& name, const Pages& pages) {
  DOCINFOW document{};
  document.cbSize = sizeof document;
  document.lpszDocName = name.c_str();
  bool good = StartDocW(printer.get(), &document) > 0;
  good = good && pages();
  good = EndDoc(printer.get()) > 0 && good;
  if (!good) {
    throw RunTimeError(ErrorNumber::kDeviceFailure, std::string(kNoAnswer));
  }
}

void PaintText(HDC context, const app::Shape& shape, RECT box) {
  const std::wstring text = ToWide(shape.text);
  const auto make = [&](LONG height) {
    return CreateFontW(-height, 0, 0, 0, shape.bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                       DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                       DEFAULT_PITCH | FF_DONTCARE, shape.mono ? L"Courier New" : L"Arial");
  };
  LONG height = std::lround(shape.size * kUnitsPerPoint);
  HFONT font = make(height);
  const HGDIOBJ previous = SelectObject(context, font);
  SIZE size{};
  GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
  if (size.cx > box.right - box.left) {
    const HFONT wide = std::exchange(font, make(MulDiv(height, box.right - box.left, size.cx)));
    SelectObject(context, font);
    DeleteObject(wide);
  }
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &box,
            DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
  SelectObject(context, previous);
  DeleteObject(font);
}

void PaintShape(HDC context, const app::Shape& shape) {
  const auto units = [](double points) { return std::lround(points * kUnitsPerPoint); };
  const RECT box{units(shape.box.x), units(shape.box.y), units(shape.box.right()),
                 units(shape.box.bottom())};
  const bool filled = shape.kind == app::Shape::Kind::kFilled;
  if (shape.kind == app::Shape::Kind::kText) {
    PaintText(context, shape, box);
    return;
  }
  SelectObject(context, GetStockObject(filled ? GRAY_BRUSH : NULL_BRUSH));
  SelectObject(context, GetStockObject(filled ? NULL_PEN : BLACK_PEN));
  Rectangle(context, box.left, box.top, box.right, box.bottom);
}

// The paper's points on the whole sheet, whose unprintable edges the origin leaves out.
void UsePoints(HDC context) {
  SetBkMode(context, TRANSPARENT);
  SetMapMode(context, MM_ANISOTROPIC);
  SetWindowExtEx(context, 72 * kUnitsPerPoint, 72 * kUnitsPerPoint, nullptr);
  SetViewportExtEx(context, GetDeviceCaps(context, LOGPIXELSX), GetDeviceCaps(context, LOGPIXELSY),
                   nullptr);
  SetViewportOrgEx(context, -GetDeviceCaps(context, PHYSICALOFFSETX),
                   -GetDeviceCaps(context, PHYSICALOFFSETY), nullptr);
}

}  // namespace

RichEditBox::~RichEditBox() {
  if (control_ != nullptr) {
    DestroyWindow(control_);
  }
}

HWND RichEditBox::Control() {
  if (control_ == nullptr) {
    control_ = MakeRichEdit(nullptr, 0);
  }
  if (control_ == nullptr) {
    throw RunTimeError(ErrorNumber::kDeviceFailure,
                       std::string(u8"el sistema no tiene el control de texto con formato"_w));
  }
  return control_;
}

void RichEditBox::LoadFile(const std::filesystem::path& file) {
  SetTextRTF(files::ReadBytes(file));
}

std::string RichEditBox::TextRTF() const {
  return RichEditSource(control_);
}

void RichEditBox::SetTextRTF(std::string_view source) {
  SetRichEditSource(Control(), source);
}

void RichEditBox::SelPrint(std::string_view name) {
  const std::wstring found = DefaultPrinter();
  if (found.empty()) {
    SaveSheet(std::string(name) + ".rtf", TextRTF());
    return;
  }
  const PrinterContext printer(found);
  PrintJob(printer, ToWide(name), [&] { return PrintText(Control(), printer); });
}

void RichEditBox::PrintPages(const app::Paper& paper, std::string_view name) {
  const std::wstring found = DefaultPrinter();
  if (found.empty()) {
    SaveSheet(std::string(name) + ".pdf", app::PdfFile(paper));
    return;
  }
  const PrinterContext printer(found);
  PrintJob(printer, ToWide(name), [&] {
    return std::ranges::all_of(paper.pages, [&](const app::Picture& page) {
      if (StartPage(printer.get()) <= 0) {
        return false;
      }
      UsePoints(printer.get());  // a new page forgets it
      for (const app::Shape& shape : page) {
        PaintShape(printer.get(), shape);
      }
      return EndPage(printer.get()) > 0;
    });
  });
}

}  // namespace tonadex::platform
