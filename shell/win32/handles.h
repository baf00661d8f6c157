#pragma once

#include <windows.h>

#include <utility>

// Drawing objects of the system that let go by themselves.
namespace tonadex::shell {

template <typename Handle>
class GdiObject {
 public:
  GdiObject() = default;
  explicit GdiObject(Handle handle) : handle_(handle) {}
  ~GdiObject() { Reset(); }
  GdiObject(GdiObject&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  GdiObject& operator=(GdiObject&& other) noexcept {
    if (this != &other) {
      Reset();
      handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
  }

  Handle get() const { return handle_; }

 private:
  void Reset() {
    if (handle_ != nullptr) {
      DeleteObject(handle_);
    }
  }
  Handle handle_ = nullptr;
};

using Font = GdiObject<HFONT>;
using Brush = GdiObject<HBRUSH>;

// Draws into memory and puts the whole picture on the window at its end, so that nothing flickers.
class BufferedPaint {
 public:
  explicit BufferedPaint(HWND window) : window_(window), screen_(BeginPaint(window, &paint_)) {
    GetClientRect(window, &area_);
    memory_ = CreateCompatibleDC(screen_);
    bitmap_ = CreateCompatibleBitmap(screen_, area_.right, area_.bottom);
    previous_ = SelectObject(memory_, bitmap_);
    SetBkMode(memory_, TRANSPARENT);
  }
  ~BufferedPaint() {
    BitBlt(screen_, 0, 0, area_.right, area_.bottom, memory_, 0, 0, SRCCOPY);
    SelectObject(memory_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(memory_);
    EndPaint(window_, &paint_);
  }
  BufferedPaint(const BufferedPaint&) = delete;
  BufferedPaint& operator=(const BufferedPaint&) = delete;

  HDC get() const { return memory_; }
  const RECT& area() const { return area_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  HDC screen_, memory_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
  RECT area_{};
};

}  // namespace tonadex::shell
