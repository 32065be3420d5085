// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace tests {

/// A client of the X server that the environment names, with windows of its own. It speaks Xlib, whose words must not
/// meet those of Qt, so everything is behind plain types. One thread a client.
class XClient {
public:
    XClient();
    ~XClient();
    bool isOpen() const;
    /// The Display*.
    void* display() const;
    /// The property that names a window's process.
    unsigned long pidProperty() const;
    /// A window below `parent`, or below the root without one, that says to belong to `pid`; to nobody with 0.
    unsigned long makeWindow(int pid, unsigned long parent = 0);
    /// Gives the window's property a text, one byte, or nothing for a value.
    void setText(unsigned long window, char const* text);
    void setBytes(unsigned long window, int byte);
    void setEmpty(unsigned long window);
    void destroy(unsigned long window);
    /// The decorations that a window asks its manager for by its hints, -1 without hints.
    long decorations(unsigned long window) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tests
