// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracer/tracer.h"

#include "simengine/importers/tracer/decoder.h"
#include "simengine/importers/tracer/streams.h"
#include "simengine/importers/tracewire.h"

#include <cstdio>
#include <memory>
#include <potracelib.h>
#include <vector>

static_assert(sizeof(potrace_word) == 8, "the rows of a bitmap go over as they are");

namespace sim {

namespace {

struct ParamDeleter {
    void operator()(potrace_param_t* param) const { potrace_param_free(param); }
};
struct StateDeleter {
    void operator()(potrace_state_t* state) const { potrace_state_free(state); }
};
using State = std::unique_ptr<potrace_state_t, StateDeleter>;

bool isSound(const wire::BitmapHead& head) {
    return head.magic == wire::kMagic && head.width > 0 && head.height > 0 &&
           static_cast<long long>(head.width) * head.height <= kMaxPixels;
}

State trace(const wire::BitmapHead& head, std::vector<potrace_word>& words) {
    const std::unique_ptr<potrace_param_t, ParamDeleter> param(potrace_param_default());
    if (!param)
        return nullptr;
    param->turdsize = head.despeckle;
    param->alphamax = head.cornerLimit;
    param->opticurve = head.optimise;
    param->opttolerance = head.tolerance;
    potrace_bitmap_t bitmap{head.width, head.height, wire::wordsOfRow(head.width), words.data()};
    State state(potrace_trace(param.get(), &bitmap));
    return state && state->status == POTRACE_STATUS_OK ? std::move(state) : nullptr;
}

bool writeOutline(const potrace_path_t& path) {
    const potrace_curve_t& curve = path.curve;
    wire::OutlineHead head;
    head.hole = path.sign == '+' ? 0 : 1;
    head.curves = static_cast<std::uint32_t>(curve.n);
    bool written = writeRecord(head);
    for (int i = 0; written && i < curve.n; ++i) {
        wire::Curve record;
        record.corner = curve.tag[i] == POTRACE_CORNER ? 1 : 0;
        // The first place of a corner is not set.
        for (int k = record.corner ? 1 : 0; k < 3; ++k) {
            record.x[k] = curve.c[i][k].x;
            record.y[k] = curve.c[i][k].y;
        }
        written = writeRecord(record);
    }
    return written;
}

} // namespace

int traceBitmap() {
    wire::BitmapHead head;
    if (!readRecord(head) || !isSound(head))
        return wire::ExitBrokenInput;
    const auto rowWords = static_cast<std::size_t>(wire::wordsOfRow(head.width));
    std::vector<potrace_word> words(rowWords * static_cast<std::size_t>(head.height));
    if (!readAll(words.data(), words.size() * sizeof(potrace_word)))
        return wire::ExitBrokenInput;
    const State state = trace(head, words);
    if (!state)
        return wire::ExitNoMemory;
    wire::TraceHead answer;
    std::int64_t curves = 0;
    for (const potrace_path_t* path = state->plist; path; path = path->next) {
        ++answer.outlines;
        curves += path->curve.n;
    }
    if (curves > head.maxCurves)
        return wire::ExitManyCurves;
    bool written = writeRecord(answer);
    // The list has every outline directly before its holes.
    for (const potrace_path_t* path = state->plist; path && written; path = path->next)
        written = writeOutline(*path);
    return written && std::fflush(stdout) == 0 ? wire::ExitDone : wire::ExitBrokenInput;
}

} // namespace sim
