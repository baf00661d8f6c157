#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <optional>
#include <string_view>

namespace tonadex::shell {

// Handles a message; an empty result passes it on to the window's previous procedure.
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

// Runs a procedure before the window's own until the window is destroyed; the last one hooked runs
// first.
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

// Makes the object handle the window's messages; nullptr ends that.
template <typename T>
void SetObject(HWND window, T* object) {
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
}

// Registers a window class; safe to call twice.
void RegisterKind(const wchar_t* name, WNDPROC procedure, UINT style = 0,
                  const wchar_t* cursor = IDC_ARROW);

// A hidden window without a parent; its size in pixels.
HWND MakeTopWindow(const wchar_t* name, std::string_view title, DWORD style, SIZE size);
// A hidden child window of one of the system's classes.
HWND MakeChild(const wchar_t* kind, DWORD style, HWND parent, int id);
// An empty one, whose behaviour is hooked.
HWND MakeBareWindow(HWND parent, DWORD style, int id);

// One of the system's structs that begin with their own size.
template <typename T>
T Sized() {
  T sized{};
  sized.cbSize = sizeof sized;
  return sized;
}

inline RECT ClientArea(HWND window) {
  RECT area{};
  GetClientRect(window, &area);
  return area;
}

// Where a window is in its parent, on the screen for nullptr.
inline RECT PlaceIn(HWND parent, HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

// The background brush of a child, asked from its parent.
inline HBRUSH GroundUnder(HWND child, HDC context) {
  return reinterpret_cast<HBRUSH>(SendMessageW(GetParent(child), WM_CTLCOLORBTN,
                                               reinterpret_cast<WPARAM>(context),
                                               reinterpret_cast<LPARAM>(child)));
}

// The parent's WM_DRAWITEM, sent on to the owner-drawn child.
inline constexpr UINT kDrawYourself = WM_APP + 2;
inline LRESULT ReflectDraw(LPARAM item) {
  return SendMessageW(reinterpret_cast<const DRAWITEMSTRUCT*>(item)->hwndItem, kDrawYourself, 0,
                      item);
}

}  // namespace tonadex::shell
