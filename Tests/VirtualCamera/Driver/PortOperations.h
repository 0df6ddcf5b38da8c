// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <gphoto2/gphoto2-port.h>

/// What a port driver can do. The library's own declaration is not among its installed headers.
struct GPPortOperations {
    int (*init)(GPPort*);
    int (*exit)(GPPort*);
    int (*open)(GPPort*);
    int (*close)(GPPort*);
    int (*read)(GPPort*, char*, int);
    int (*check_int)(GPPort*, char*, int, int);
    int (*write)(GPPort*, const char*, int);
    int (*update)(GPPort*);
    int (*get_pin)(GPPort*, GPPin, GPLevel*);
    int (*set_pin)(GPPort*, GPPin, GPLevel);
    int (*send_break)(GPPort*, int);
    int (*flush)(GPPort*, int);
    int (*find_device)(GPPort*, int, int);
    int (*find_device_by_class)(GPPort*, int, int, int);
    int (*clear_halt)(GPPort*, int);
    int (*msg_write)(GPPort*, int, int, int, char*, int);
    int (*msg_read)(GPPort*, int, int, int, char*, int);
    int (*msg_interface_write)(GPPort*, int, int, int, char*, int);
    int (*msg_interface_read)(GPPort*, int, int, int, char*, int);
    int (*msg_class_write)(GPPort*, int, int, int, char*, int);
    int (*msg_class_read)(GPPort*, int, int, int, char*, int);
    int (*seek)(GPPort*, int, int);
    int (*send_scsi_cmd)(GPPort*, int, char*, int, char*, int, char*, int);
    int (*reset)(GPPort*);
};
