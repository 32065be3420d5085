// SPDX-License-Identifier: MIT
// Modules that cannot be loaded: what is wrong with each is chosen by a definition of its target.
#include "engine/externmodules.h"

#include <stdexcept>

extern void aFunctionThatIsNowhere();

namespace {

class Empty : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override {
        if (BAD_INFOS)
            throw 7;
        return {};
    }
    IMarkToolBase* CreateTool(QString const&) override { return nullptr; }
};

} // namespace

#if BAD_NAME
extern "C" ENGINE_API IMarkToolModule* MakeMarkToolModule() {
#else
extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
#endif
    if (BAD_THROWS)
        throw std::runtime_error("no licence key");
#if BAD_SYMBOL
    aFunctionThatIsNowhere();
#endif
    return BAD_NULL ? nullptr : new Empty;
}
