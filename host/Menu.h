#pragma once
// The host's menu of the stock module: the function codes under their subsystem, with the
// captions the menu shows. The module answers exactly these codes.
#include <vector>

namespace qx::host {

struct MenuEntry {
    int code;
    const char* caption;
};

struct MenuGroup {
    const char* title;       // the menu title in the menu bar
    const char* objectName;  // "menuDocuments", ...
    std::vector<MenuEntry> entries;
};

const std::vector<MenuGroup>& moduleMenu();

}  // namespace qx::host
