// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/markcardinstance.h"

#include "simengine/card/cardcore.h"

#include <atomic>
#include <memory>

namespace {

struct Holder {
    std::unique_ptr<IMarkCardBase> owned;
    std::atomic<IMarkCardBase*> current{nullptr};

    // The card object closes the machine when it goes, so the machine has to be there longer.
    Holder() { sim::simulatedCard(); }
    ~Holder() { current.store(nullptr); }
};

Holder& holder() {
    static Holder instance;
    return instance;
}

} // namespace

void MarkCardInstance::SetMarkCardInstance(IMarkCardBase* card) {
    Holder& cards = holder();
    if (card == cards.current.load())
        return;
    cards.current.store(card);
    cards.owned.reset(card);
}

IMarkCardBase* MarkCardInstance::Instance() {
    return holder().current.load();
}
