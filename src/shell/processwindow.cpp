// SPDX-License-Identifier: MIT
// No header of Qt here: those of Xlib define words like None and Bool.
#include "shell/processwindow.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <memory>

namespace {

std::vector<unsigned long>& found() {
    static std::vector<unsigned long> windows;
    return windows;
}

struct CloseDisplay {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

struct FreeXData {
    void operator()(void* data) const { XFree(data); }
};

/// A window may vanish between being listed and being asked. Xlib's own handler would end the program for that.
class PassOverErrors {
public:
    explicit PassOverErrors(Display* display)
        : m_display(display)
        , m_former(XSetErrorHandler([](Display*, XErrorEvent*) { return 0; })) {}
    ~PassOverErrors() {
        XSync(m_display, False);
        XSetErrorHandler(m_former);
    }
    PassOverErrors(PassOverErrors const&) = delete;
    PassOverErrors& operator=(PassOverErrors const&) = delete;

private:
    Display* m_display;
    XErrorHandler m_former;
};

/// Whether the window's property holds this process number, one value of 32 bits, which Xlib hands over as a long.
bool belongsTo(Display* display, Window window, Atom property, int pid) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* bytes = nullptr;
    if (XGetWindowProperty(display, window, property, 0, 1, False, XA_CARDINAL, &type, &format, &count, &rest,
                           &bytes) != Success)
        return false;
    const std::unique_ptr<void, FreeXData> owner(bytes);
    constexpr int kLongFormat = 32;
    return bytes && count > 0 && format == kLongFormat &&
           *reinterpret_cast<unsigned long const*>(bytes) == static_cast<unsigned long>(pid);
}

} // namespace

std::vector<unsigned long> const& tessera::FoundWindows() {
    return found();
}

void search(unsigned long window, void* display, unsigned long atom, int pid) {
    auto* server = static_cast<Display*>(display);
    if (belongsTo(server, window, atom, pid))
        found().push_back(window);
    Window root = None;
    Window parent = None;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(server, window, &root, &parent, &children, &count) == 0)
        return;
    const std::unique_ptr<void, FreeXData> owner(children);
    for (unsigned int i = 0; i < count; ++i)
        search(children[i], display, atom, pid);
}

unsigned long get_win_id_from_pid(int pid) {
    found().clear();
    const std::unique_ptr<Display, CloseDisplay> display(XOpenDisplay(nullptr));
    if (!display)
        return 0;
    const PassOverErrors guard(display.get());
    const Atom property = XInternAtom(display.get(), "_NET_WM_PID", True);
    if (property != None)
        search(XDefaultRootWindow(display.get()), display.get(), property, pid);
    return found().empty() ? 0 : found().front();
}
