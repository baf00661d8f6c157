#include "app/control_looks.h"

#include <algorithm>
#include <array>

namespace tonadex::app {
namespace {

// Where the look is not the usual one of the kind.
struct Special {
  Control Form1::*control;
  Look look;
};
constexpr auto kSpecials = std::to_array<Special>({{&Form1::Textavisos, Look::kNotices},
                                                   {&Form1::texttempo, Look::kReading},
                                                   {&Form1::cmbmarcas, Look::kList},
                                                   {&Form1::cmbformatos, Look::kList},
                                                   {&Form1::navbanner, Look::kBanner}});

// By position of the kind.
constexpr auto kUsual = std::to_array<Look>(
    {Look::kLabel, Look::kButton, Look::kButton, Look::kLine, Look::kArea, Look::kDisplay,
     Look::kList, Look::kComboBox, Look::kPage, Look::kTimer, Look::kNone});
static_assert(kUsual.size() == static_cast<std::size_t>(ControlKind::kStorage) + 1);

}  // namespace

Look LookOf(const ControlInfo& info) {
  if (IsNavigation(info.member)) {
    return Look::kNavigation;
  }
  const auto special = std::ranges::find(kSpecials, info.member, &Special::control);
  return special != kSpecials.end() ? special->look : kUsual[static_cast<std::size_t>(info.kind)];
}

}  // namespace tonadex::app
