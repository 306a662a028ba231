#pragma once
// What the window does to a component besides feeding it: sizes from 1x1 to 4000x4000,
// rapid show and hide, and real paints (the caches live in Paint).
#include "stage.h"
#include "valuepool.h"

namespace kxsoak {

// Handles posted events and the deferred deletions they leave.
void Pump();
// A random size, mostly small to medium; the extremes (1x1, 4000x1, ...) now and then.
void ResizeRandom(TSoakStage& stage, TValuePool& pool);
// 4000x4000 or a long thin strip: expensive, so the caller does it rarely. Without
// square, strips only (a short run under sanitizers cannot afford 16 million pixels).
void ResizeHuge(TSoakStage& stage, TValuePool& pool, bool square);
// Hides and shows the subject (sometimes the whole window) several times in a row.
void Flicker(TSoakStage& stage, TValuePool& pool);
// Paints the subject for sure: a grab, or a repaint through the window's backing store.
void PaintNow(TSoakStage& stage, TValuePool& pool);

}  // namespace kxsoak
