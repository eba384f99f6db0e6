#pragma once

namespace GW {

class CAuthSettingPage;

/// Adds to a new page the tab pages and corner buttons that belong to its place; none for a place
/// that the dialog does not have.
void addTabPages(CAuthSettingPage* page);

} // namespace GW
