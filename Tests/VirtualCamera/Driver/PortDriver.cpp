// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Cable.h"
#include "Plug.h"
#include "PortOperations.h"

#include <fcntl.h>
#include <gphoto2/gphoto2-port-info-list.h>
#include <gphoto2/gphoto2-port-result.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#define EXPORTED extern "C" __attribute__((visibility("default")))

using bildkurier::Cable;
using bildkurier::Plug;

/// What the library keeps for this driver with each of its ports.
struct _GPPortPrivateLibrary {
    std::optional<Plug> plug;      ///< the camera that was looked for and found
    std::unique_ptr<Cable> cable;  ///< null while closed
};

namespace {

/// The camera at the port; any where the port names none.
std::optional<Plug> plugAt(GPPort* port) {
    GPPortInfo info = nullptr;
    char* path = nullptr;
    if (gp_port_get_info(port, &info) < GP_OK || gp_port_info_get_path(info, &path) < GP_OK)
        return std::nullopt;
    const std::string name(path);
    const std::string wanted = name.substr(name.find(':') + 1);
    for (const Plug& plug : Plug::all()) {
        if (wanted.empty() || plug.port() == wanted) return plug;
    }
    return std::nullopt;
}

int found(GPPort* port, const Plug& plug) {
    port->pl->plug = plug;
    auto& usb = port->settings.usb;
    usb.config = 1;
    usb.interface = 0;
    usb.altsetting = 0;
    usb.inep = 0x81;
    usb.outep = 0x02;
    usb.intep = 0x83;
    usb.maxpacketsize = 512;
    return GP_OK;
}

int findDevice(GPPort* port, int vendor, int product) {
    const auto plug = plugAt(port);
    if (!plug || plug->vendor() != vendor || plug->product() != product)
        return GP_ERROR_IO_USB_FIND;
    return found(port, *plug);
}

int findDeviceByClass(GPPort* port, int kind, int subclass, int protocol) {
    const auto plug = plugAt(port);
    if (!plug || kind != 6 || subclass != 1 || protocol != 1) return GP_ERROR_IO_USB_FIND;
    return found(port, *plug);
}

/// Another process that has the camera open keeps this one out, as does a wish to be busy.
int open(GPPort* port) {
    const auto plug = plugAt(port);
    if (!plug) return GP_ERROR_IO_USB_FIND;
    plug->count("openings");
    const auto busyOpening =
        plug->counted("openings") - std::max<std::int64_t>(0, plug->number("busy_after"));
    if (busyOpening > 0 && busyOpening <= plug->number("busy")) return GP_ERROR_IO_USB_CLAIM;
    const int claim = ::open(plug->settingsFile().c_str(), O_RDONLY | O_CLOEXEC);
    if (claim < 0) return GP_ERROR_IO_USB_FIND;
    if (::flock(claim, LOCK_EX | LOCK_NB) != 0) {
        ::close(claim);
        return GP_ERROR_IO_USB_CLAIM;
    }
    port->pl->cable = std::make_unique<Cable>(*plug, claim);
    return GP_OK;
}

int message(GPPort* port, int /*request*/, int /*value*/, int /*index*/, char* /*bytes*/,
            int size) {
    const int code = port->pl->cable ? port->pl->cable->reset() : GP_OK;
    return code == GP_OK ? size : code;
}

template <class Use>
int use(GPPort* port, Use withCable) {
    return port->pl->cable ? withCable(*port->pl->cable) : GP_ERROR_IO;
}

}  // namespace

EXPORTED GPPortType gp_port_library_type() { return GP_PORT_USB; }

EXPORTED int gp_port_library_list(GPPortInfoList* list) {
    const auto add = [list](const char* name, const std::string& path) {
        GPPortInfo info = nullptr;
        gp_port_info_new(&info);
        gp_port_info_set_type(info, GP_PORT_USB);
        gp_port_info_set_name(info, name);
        gp_port_info_set_path(info, path.c_str());
        gp_port_info_list_append(list, info);
    };
    add("", "^usb:");
    for (const Plug& plug : Plug::all()) add("Universal Serial Bus", "usb:" + plug.port());
    return GP_OK;
}

EXPORTED GPPortOperations* gp_port_library_operations() {
    // The library frees it.
    auto* operations = static_cast<GPPortOperations*>(std::calloc(1, sizeof(GPPortOperations)));
    operations->init = [](GPPort* port) {
        port->pl = new _GPPortPrivateLibrary;
        return GP_OK;
    };
    operations->exit = [](GPPort* port) {
        delete port->pl;
        port->pl = nullptr;
        return GP_OK;
    };
    operations->open = open;
    operations->close = [](GPPort* port) {
        port->pl->cable.reset();
        return GP_OK;
    };
    operations->read = [](GPPort* port, char* bytes, int size) {
        return use(port, [&](Cable& cable) {
            return cable.read({bytes, static_cast<std::size_t>(size)}, port->timeout);
        });
    };
    operations->write = [](GPPort* port, const char* bytes, int size) {
        return use(port, [&](Cable& cable) {
            return cable.write({bytes, static_cast<std::size_t>(size)});
        });
    };
    operations->check_int = [](GPPort* port, char* bytes, int size, int milliseconds) {
        return use(port, [&](Cable& cable) {
            return cable.event({bytes, static_cast<std::size_t>(size)}, milliseconds);
        });
    };
    operations->clear_halt = [](GPPort* port, int) {
        return use(port, [](const Cable& cable) { return cable.check(); });
    };
    operations->update = operations->reset = [](GPPort*) { return GP_OK; };
    operations->find_device = findDevice;
    operations->find_device_by_class = findDeviceByClass;
    operations->msg_write = operations->msg_read = message;
    operations->msg_interface_write = operations->msg_interface_read = message;
    operations->msg_class_write = operations->msg_class_read = message;
    return operations;
}
