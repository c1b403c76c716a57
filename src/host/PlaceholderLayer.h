// The picture that stands for a layer map without a layer: wherever a material shows it, the artist
// sees that a map belongs there.
#pragma once

namespace orvin {

/// Puts the picture into the image cache as the layer "|ExtMap0". Throws std::bad_alloc.
void installPlaceholderLayer();

}  // namespace orvin
