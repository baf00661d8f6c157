#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <optional>

namespace tonadex::shell {

// What a window does with a message; none leaves it to the window as the system made it.
using Procedure = std::function<std::optional<LRESULT>(HWND, UINT, WPARAM, LPARAM)>;

namespace detail {

inline LRESULT CALLBACK Hooked(HWND window, UINT message, WPARAM wide, LPARAM data, UINT_PTR id,
                               DWORD_PTR reference) {
  auto* procedure = reinterpret_cast<Procedure*>(reference);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(window, Hooked, id);
    delete procedure;
    return DefSubclassProc(window, message, wide, data);
  }
  const std::optional<LRESULT> result = (*procedure)(window, message, wide, data);
  return result ? *result : DefSubclassProc(window, message, wide, data);
}

}  // namespace detail

// Puts a procedure before the window's own until the window ends. The last one hooked comes first.
inline void HookWindow(HWND window, Procedure procedure) {
  auto* kept = new Procedure(std::move(procedure));
  SetWindowSubclass(window, detail::Hooked, reinterpret_cast<UINT_PTR>(kept),
                    reinterpret_cast<DWORD_PTR>(kept));
}

// The procedure of a window whose user data is an object of class T: its Handle answers first.
template <typename T>
LRESULT CALLBACK ObjectProcedure(HWND window, UINT message, WPARAM wide, LPARAM data) {
  auto* self = reinterpret_cast<T*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  const std::optional<LRESULT> result =
      self != nullptr ? self->Handle(message, wide, data) : std::nullopt;
  return result ? *result : DefWindowProcW(window, message, wide, data);
}

// From now on, or no longer for nullptr, the object answers the window's messages.
template <typename T>
void SetObject(HWND window, T* object) {
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
}

// A kind of windows of our own; again is no harm.
void RegisterKind(const wchar_t* name, WNDPROC procedure, UINT style = 0,
                  const wchar_t* cursor = IDC_ARROW);

// A hidden child window of a kind of the system's.
HWND MakeChild(const wchar_t* kind, DWORD style, HWND parent, int id);
// A bare one for a widget of our own; its behaviour is hooked.
HWND MakeBareWindow(HWND parent, DWORD style, int id);

// The brush of what a child stands on, as its parent says.
inline HBRUSH GroundUnder(HWND child, HDC context) {
  return reinterpret_cast<HBRUSH>(SendMessageW(GetParent(child), WM_CTLCOLORBTN,
                                               reinterpret_cast<WPARAM>(context),
                                               reinterpret_cast<LPARAM>(child)));
}

// What windows that we paint are asked with the parent's WM_DRAWITEM.
inline constexpr UINT kDrawYourself = WM_APP + 2;
inline LRESULT ReflectDraw(LPARAM item) {
  return SendMessageW(reinterpret_cast<const DRAWITEMSTRUCT*>(item)->hwndItem, kDrawYourself, 0,
                      item);
}

}  // namespace tonadex::shell
