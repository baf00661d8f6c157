#pragma once

#include <span>
#include <string>
#include <string_view>

#include "app/pages/page.h"

namespace tonadex::app {

// The melody server: search, random pick and download.
class SearchPage {
 public:
  explicit SearchPage(SharedState& state) : state_(state) {}

  void picabuscar_Click();
  void picazar_Click();
  void picdescargar_Click();

  Control txtbuscar, picabuscar, picazar, picdescargar;
  Control serverLine;  // that the server failed, and what follows; "" while it has not

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);

 protected:
  void ClearSearch();
  void RefreshSearch();

 private:
  void ReadListing(std::string_view address, bool stemAlone);
  // For serverLine: "" for a good reply.
  std::string ServerWords(bool replied, std::string_view consequence) const;

  SharedState& state_;
};

}  // namespace tonadex::app
