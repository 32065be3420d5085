// SPDX-License-Identifier: MIT
// What stands for the desktop's display settings in the tests: shows a window of its own, says on its output whether
// the window lost its frame within ten seconds, and ends.
#include "tests/shell/xclient.h"

#include <chrono>
#include <cstdio>
#include <thread>
#include <unistd.h>

int main() {
    tests::XClient client;
    if (!client.isOpen())
        return 1;
    const unsigned long window = client.makeWindow(getpid());
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (client.decorations(window) != 0) {
        if (std::chrono::steady_clock::now() > end) {
            std::puts("framed");
            return 0;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::puts("frameless");
    return 0;
}
