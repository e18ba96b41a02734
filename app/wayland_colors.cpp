// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/wayland_colors.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include <wayland-client.h>

namespace complexion {

namespace {

/// The extension for colour management and the one that it was developed as. A compositor that has either
/// takes windows that say nothing about their colours for sRGB.
constexpr std::array<std::string_view, 2> kExtensions = {"wp_color_manager_v1", "xx_color_manager_v4"};

struct DisplayCloser {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

struct RegistryDeleter {
    void operator()(wl_registry* registry) const { wl_registry_destroy(registry); }
};

void added(void* found, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
           std::uint32_t /*version*/) {
    if (std::ranges::find(kExtensions, std::string_view(interface)) != kExtensions.end())
        *static_cast<bool*>(found) = true;
}

void removed(void* /*found*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

} // namespace

bool compositorConvertsColors() {
    const std::unique_ptr<wl_display, DisplayCloser> display(wl_display_connect(nullptr));
    if (!display)
        return true;
    const std::unique_ptr<wl_registry, RegistryDeleter> registry(wl_display_get_registry(display.get()));
    static constexpr wl_registry_listener kListener = {.global = added, .global_remove = removed};
    bool isFound = false;
    if (!registry || wl_registry_add_listener(registry.get(), &kListener, &isFound) != 0 ||
        wl_display_roundtrip(display.get()) < 0)
        return true;
    return isFound;
}

} // namespace complexion
