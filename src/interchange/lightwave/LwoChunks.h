// The chunks of the two kinds of LightWave objects.
#pragma once

#include "interchange/ByteReader.h"
#include "interchange/lightwave/LwoLayer.h"
#include "interchange/lightwave/LwoSurfaces.h"
#include "toolkit/Result.h"

namespace orvin::lwo {

// Each reads the chunks of a file (without its FORM header) and finishes the layer. -1 when the
// progress callback stopped it.
Result readLwobChunks(ByteReader chunks, Layer& layer, Surfaces& surfaces);
Result readLwo2Chunks(ByteReader chunks, Layer& layer, Surfaces& surfaces);

}  // namespace orvin::lwo
