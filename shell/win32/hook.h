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

// A bare child window for a widget of our own; its behaviour is hooked.
HWND MakeBareWindow(HWND parent, DWORD style);

}  // namespace tonadex::shell
