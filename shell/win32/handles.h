#pragma once

#include <windows.h>

#include <uxtheme.h>

#include <memory>

// Owners of the system's drawing objects.
namespace tonadex::shell {

struct DeleteGdiObject {
  void operator()(HGDIOBJ handle) const { DeleteObject(handle); }
};
using Font = std::unique_ptr<HFONT__, DeleteGdiObject>;
using Brush = std::unique_ptr<HBRUSH__, DeleteGdiObject>;

// Paints into a buffer that is copied to the window at the end, so that nothing flickers.
class BufferedPaint {
 public:
  explicit BufferedPaint(HWND window) : window_(window) {
    const HDC screen = BeginPaint(window, &paint_);
    GetClientRect(window, &area_);
    buffer_ = BeginBufferedPaint(screen, &area_, BPBF_COMPATIBLEBITMAP, nullptr, &memory_);
    SetBkMode(memory_, TRANSPARENT);
  }
  ~BufferedPaint() {
    EndBufferedPaint(buffer_, TRUE);
    EndPaint(window_, &paint_);
  }
  BufferedPaint(const BufferedPaint&) = delete;
  BufferedPaint& operator=(const BufferedPaint&) = delete;

  HDC get() const { return memory_; }
  const RECT& area() const { return area_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  RECT area_{};
  HDC memory_ = nullptr;
  HPAINTBUFFER buffer_;
};

}  // namespace tonadex::shell
