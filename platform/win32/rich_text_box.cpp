#include "platform/win32/rich_text_box.h"

#include <richedit.h>
#include <winspool.h>

#include <string>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/read.h"
#include "platform/win32/rich_edit.h"
#include "platform/win32/send.h"

namespace tonadex::platform {
namespace {

using namespace core::literals;
using core::ErrorNumber;
using core::RunTimeError;

constexpr int kTwipsPerInch = 1440;
constexpr UINT kUtf16 = 1200;  // number of the code page

class PrinterContext {
 public:
  PrinterContext() {
    DWORD size = 0;
    GetDefaultPrinterW(nullptr, &size);
    std::wstring name(size, L'\0');
    if (size != 0 && GetDefaultPrinterW(name.data(), &size) != 0) {
      context_ = CreateDCW(L"WINSPOOL", name.c_str(), nullptr, nullptr);
    }
    if (context_ == nullptr) {
      throw RunTimeError(ErrorNumber::kDeviceFailure,
                         std::string(u8"no hay ninguna impresora en la que imprimir"_w));
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
bool PrintPages(HWND control, const PrinterContext& printer) {
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

void RichEditBox::SelPrint() {
  const PrinterContext printer;
  DOCINFOW document{};
  document.cbSize = sizeof document;
  document.lpszDocName = L"Tonadex";
  bool good = StartDocW(printer.get(), &document) > 0;
  good = good && PrintPages(Control(), printer);
  good = EndDoc(printer.get()) > 0 && good;
  if (!good) {
    throw RunTimeError(ErrorNumber::kDeviceFailure, std::string(u8"la impresora no responde"_w));
  }
}

}  // namespace tonadex::platform
