#include "scene/FileFlags.h"

namespace orvin {

bool gFileFromOtherPlatform = false;
bool gSaveThumbnailsAscii = false;

}  // namespace orvin
