// SPDX-License-Identifier: MIT
// No header of Qt here: those of Xlib define words like None and Bool.
#include "tests/shell/xclient.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstring>

namespace tests {

struct XClient::Private {
    Display* display = XOpenDisplay(nullptr);
    Atom pid = display ? XInternAtom(display, "_NET_WM_PID", False) : None;
};

XClient::XClient()
    : d(std::make_unique<Private>()) {}

XClient::~XClient() {
    if (d->display)
        XCloseDisplay(d->display);
}

bool XClient::isOpen() const {
    return d->display;
}

void* XClient::display() const {
    return d->display;
}

unsigned long XClient::pidProperty() const {
    return d->pid;
}

unsigned long XClient::makeWindow(int pid, unsigned long parent) {
    const Window window =
        XCreateSimpleWindow(d->display, parent ? parent : XDefaultRootWindow(d->display), 0, 0, 10, 10, 0, 0, 0);
    if (pid != 0) {
        const long value = pid;
        XChangeProperty(d->display, window, d->pid, XA_CARDINAL, 32, PropModeReplace,
                        reinterpret_cast<unsigned char const*>(&value), 1);
    }
    XSync(d->display, False);
    return window;
}

void XClient::setText(unsigned long window, char const* text) {
    XChangeProperty(d->display, window, d->pid, XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<unsigned char const*>(text), static_cast<int>(std::strlen(text)));
    XSync(d->display, False);
}

void XClient::setBytes(unsigned long window, int byte) {
    const auto value = static_cast<unsigned char>(byte);
    XChangeProperty(d->display, window, d->pid, XA_CARDINAL, 8, PropModeReplace, &value, 1);
    XSync(d->display, False);
}

void XClient::setEmpty(unsigned long window) {
    const long unused = 0;
    XChangeProperty(d->display, window, d->pid, XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<unsigned char const*>(&unused), 0);
    XSync(d->display, False);
}

void XClient::destroy(unsigned long window) {
    XDestroyWindow(d->display, window);
    XSync(d->display, False);
}

long XClient::decorations(unsigned long window) const {
    const Atom hints = XInternAtom(d->display, "_MOTIF_WM_HINTS", False);
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* bytes = nullptr;
    constexpr long kFields = 5;
    constexpr int kDecorations = 2;
    long result = -1;
    if (XGetWindowProperty(d->display, window, hints, 0, kFields, False, AnyPropertyType, &type, &format, &count, &rest,
                           &bytes) == Success &&
        bytes && count > kDecorations && format == 32)
        result = reinterpret_cast<long const*>(bytes)[kDecorations];
    if (bytes)
        XFree(bytes);
    return result;
}

} // namespace tests
