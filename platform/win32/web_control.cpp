#include "platform/win32/web_control.h"

#include <comutil.h>
#include <exdisp.h>
#include <exdispid.h>
#include <mshtmhst.h>
#include <ole2.h>
#include <wrl/client.h>

#include <atomic>
#include <string>
#include <utility>

#include "platform/win32/wide_text.h"

namespace tonadex::platform {
namespace {

constexpr wchar_t kHostClass[] = L"TonadexWeb";
constexpr ULONGLONG kClickMs = 1000;  // maximum time from a click to the navigation that it causes

using Microsoft::WRL::ComPtr;

}  // namespace

// The interfaces that the control requires of its host.
struct WebControl::Site final : IOleClientSite,
                                IOleInPlaceSite,
                                IOleInPlaceFrame,
                                IDocHostUIHandler,
                                IDocHostShowUI,
                                DWebBrowserEvents2 {
  Site(HWND parent, Links linksKind, std::function<void()> leftCallback);

  static LRESULT CALLBACK HostProcedure(HWND, UINT, WPARAM, LPARAM);
  static HWND MakeHost(HWND parent);
  void Make();
  void Drop();
  void Fit();
  HRESULT BeforeNavigate(DISPPARAMS& arguments);
  void TellThatAClickLeft();

  HWND host = nullptr;
  Links links;
  std::function<void()> left;
  ComPtr<IOleObject> object;
  ComPtr<IWebBrowser2> browser;
  ComPtr<IOleInPlaceActiveObject> active;
  ComPtr<IConnectionPoint> events;
  DWORD eventsCookie = 0;
  bool tried = false;
  ULONGLONG clicked = 0;  // time of the last click or Enter in the page, ms; 0 for never
  bool ours = false;      // the program requested the navigation that is starting
  std::atomic<ULONG> references{1};

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG rest = --references;
    if (rest == 0) {
      delete this;
    }
    return rest;
  }
  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** out) override {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }
  // IOleWindow, IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* out) override {
    *out = host;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window,
                                             LPRECT position, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO info) override;
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT) override { return S_OK; }
  // IOleInPlaceUIWindow, IOleInPlaceFrame
  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }
  // IDocHostUIHandler
  template <typename Out>
  static HRESULT Nothing(Out** out) {
    *out = nullptr;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*) override {
    return S_OK;  // no menu
  }
  HRESULT STDMETHODCALLTYPE GetHostInfo(DOCHOSTUIINFO* info) override {
    info->dwFlags = DOCHOSTUIFLAG_NO3DBORDER | DOCHOSTUIFLAG_THEME | DOCHOSTUIFLAG_DPI_AWARE |
                    (links == Links::kReport ? DOCHOSTUIFLAG_SCROLL_NO : 0);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*,
                                   IOleInPlaceFrame*, IOleInPlaceUIWindow*) override {
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE HideUI() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE UpdateUI() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, const GUID*, DWORD) override {
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE GetOptionKeyPath(LPOLESTR*, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDropTarget(IDropTarget*, IDropTarget**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetExternal(IDispatch** out) override { return Nothing(out); }
  HRESULT STDMETHODCALLTYPE TranslateUrl(DWORD, OLECHAR*, OLECHAR** out) override {
    return Nothing(out);
  }
  HRESULT STDMETHODCALLTYPE FilterDataObject(IDataObject*, IDataObject** out) override {
    return Nothing(out);
  }
  // IDocHostShowUI: suppresses message boxes of scripts; a question is answered with "no".
  HRESULT STDMETHODCALLTYPE ShowMessage(HWND, LPOLESTR, LPOLESTR, DWORD kind, LPOLESTR, DWORD,
                                        LRESULT* result) override {
    *result = (kind & MB_TYPEMASK) == MB_OK ? IDOK : IDCANCEL;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ShowHelp(HWND, LPOLESTR, UINT, DWORD, POINT, IDispatch*) override {
    return S_OK;
  }
  // IDispatch of DWebBrowserEvents2
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                                   EXCEPINFO*, UINT*) override;
};

LRESULT CALLBACK WebControl::Site::HostProcedure(HWND window, UINT message, WPARAM wide,
                                                 LPARAM data) {
  auto* site = reinterpret_cast<Site*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_SIZE && site != nullptr) {
    site->Fit();
  }
  return DefWindowProcW(window, message, wide, data);
}

HWND WebControl::Site::MakeHost(HWND parent) {
  WNDCLASSW kind{};
  kind.lpfnWndProc = HostProcedure;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  kind.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
  kind.lpszClassName = kHostClass;
  RegisterClassW(&kind);  // fails harmlessly when registered already
  return CreateWindowExW(WS_EX_CONTROLPARENT, kHostClass, L"",
                         WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, 0, 1, 1, parent, nullptr,
                         kind.hInstance, nullptr);
}

WebControl::Site::Site(HWND parent, Links linksKind, std::function<void()> leftCallback)
    : host(MakeHost(parent)), links(linksKind), left(std::move(leftCallback)) {
  SetWindowLongPtrW(host, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

HRESULT WebControl::Site::QueryInterface(REFIID id, void** out) {
  *out = nullptr;
  if (id == IID_IUnknown || id == IID_IOleClientSite) {
    *out = static_cast<IOleClientSite*>(this);
  } else if (id == IID_IOleWindow || id == IID_IOleInPlaceSite) {
    *out = static_cast<IOleInPlaceSite*>(this);
  } else if (id == IID_IOleInPlaceUIWindow || id == IID_IOleInPlaceFrame) {
    *out = static_cast<IOleInPlaceFrame*>(this);
  } else if (id == IID_IDocHostUIHandler) {
    *out = static_cast<IDocHostUIHandler*>(this);
  } else if (id == __uuidof(IDocHostShowUI)) {
    *out = static_cast<IDocHostShowUI*>(this);
  } else if (id == IID_IDispatch || id == DIID_DWebBrowserEvents2) {
    *out = static_cast<DWebBrowserEvents2*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

HRESULT WebControl::Site::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window,
                                           LPRECT position, LPRECT clip,
                                           LPOLEINPLACEFRAMEINFO info) {
  *frame = this;
  AddRef();
  *window = nullptr;
  GetClientRect(host, position);
  *clip = *position;
  info->fMDIApp = FALSE;
  info->hwndFrame = GetAncestor(host, GA_ROOT);
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

void WebControl::Site::Make() {
  tried = true;
  RECT place{};
  GetClientRect(host, &place);
  ComPtr<IConnectionPointContainer> points;
  const bool works =
      CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER,
                       IID_PPV_ARGS(object.GetAddressOf())) == S_OK &&
      object->SetClientSite(this) == S_OK &&
      SUCCEEDED(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, host, &place)) &&
      object.As(&browser) == S_OK;
  if (!works) {
    Drop();
    return;
  }
  browser->put_Silent(VARIANT_TRUE);  // no boxes about script errors
  object.As(&active);
  if (object.As(&points) == S_OK &&
      points->FindConnectionPoint(DIID_DWebBrowserEvents2, events.GetAddressOf()) == S_OK) {
    events->Advise(static_cast<DWebBrowserEvents2*>(this), &eventsCookie);
  }
}

void WebControl::Site::Drop() {
  if (events && eventsCookie != 0) {
    events->Unadvise(eventsCookie);
  }
  events.Reset();
  active.Reset();
  browser.Reset();
  if (object) {
    object->Close(OLECLOSE_NOSAVE);
    object->SetClientSite(nullptr);
  }
  object.Reset();
}

void WebControl::Site::Fit() {
  ComPtr<IOleInPlaceObject> place;
  if (object && object.As(&place) == S_OK) {
    RECT area{};
    GetClientRect(host, &area);
    place->SetObjectRects(&area, &area);
  }
}

HRESULT WebControl::Site::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                                 EXCEPINFO*, UINT*) {
  if (id == DISPID_BEFORENAVIGATE2 && arguments != nullptr && arguments->cArgs == 7) {
    return BeforeNavigate(*arguments);
  }
  if (id == DISPID_NEWWINDOW2 && arguments != nullptr && arguments->cArgs == 2) {
    *arguments->rgvarg[0].pboolVal = VARIANT_TRUE;  // cancel: no new window
    TellThatAClickLeft();
  }
  if (id == DISPID_NAVIGATEERROR && arguments != nullptr && arguments->cArgs == 5 &&
      links == Links::kReport) {
    *arguments->rgvarg[0].pboolVal = VARIANT_TRUE;  // cancel: no error page of the system
  }
  return S_OK;
}

// Reports once per click; otherwise a page that navigates by itself would be reloaded forever.
void WebControl::Site::TellThatAClickLeft() {
  const ULONGLONG when = std::exchange(clicked, 0);
  if (when != 0 && GetTickCount64() - when <= kClickMs && links == Links::kReport && left) {
    left();
  }
}

// The arguments are in reverse order: [0] is Cancel, [6] the frame that navigates.
HRESULT WebControl::Site::BeforeNavigate(DISPPARAMS& arguments) {
  ComPtr<IUnknown> frame, whole;
  if (links == Links::kFollow || arguments.rgvarg[6].pdispVal == nullptr ||
      arguments.rgvarg[6].pdispVal->QueryInterface(IID_PPV_ARGS(frame.GetAddressOf())) != S_OK ||
      browser.As(&whole) != S_OK || frame.Get() != whole.Get()) {
    return S_OK;  // allow it: a followed link, or a frame within the page
  }
  if (std::exchange(ours, false)) {
    return S_OK;
  }
  *arguments.rgvarg[0].pboolVal = VARIANT_TRUE;
  TellThatAClickLeft();
  return S_OK;
}

WebControl::WebControl(HWND parent, Links links, std::function<void()> left)
    : site_(new Site(parent, links, std::move(left))) {}

WebControl::~WebControl() {
  SetWindowLongPtrW(site_->host, GWLP_USERDATA, 0);  // fails harmlessly when the window is gone
  site_->Drop();
  site_->left = nullptr;
  site_->Release();
}

HWND WebControl::window() const {
  return site_->host;
}

void WebControl::Navigate(std::string_view url) {
  if (!site_->tried) {
    site_->Make();
  }
  if (!site_->browser) {
    return;
  }
  _variant_t address(ToWide(url).c_str()), none;
  _variant_t flags(static_cast<long>(navNoHistory | navNoReadFromCache));
  site_->ours = true;
  site_->ours =
      SUCCEEDED(site_->browser->Navigate2(&address, &flags, &none, &none, &none)) && site_->ours;
}

bool WebControl::Translate(MSG& message) {
  if (!site_->active || IsChild(site_->host, message.hwnd) == 0) {
    return false;
  }
  if (message.message == WM_LBUTTONUP || message.message == WM_MBUTTONUP ||
      (message.message == WM_KEYDOWN && message.wParam == VK_RETURN)) {
    site_->clicked = GetTickCount64();
  }
  return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST &&
         site_->active->TranslateAccelerator(&message) == S_OK;
}

}  // namespace tonadex::platform
