#pragma once

namespace tonadex::shell {

// Whether the desktop asks programs for dark colours. Desktops whose palette does not reach the
// toolkit say it over D-Bus; without a bus or an answer it is false.
bool SystemPrefersDark();

}  // namespace tonadex::shell
