// The enums that travel as exceptions. The effect's entry turns each into a message and a host
// error number; a host error code itself travels as a plain long.
#pragma once

namespace orvin {

enum eBaseError {
    kImageBufferFailed = 101,  // an image buffer can't be allocated
};

enum eOrvinError {
    kSetGroupMissing = 208,  // the group of a Set isn't in the scene
};

}  // namespace orvin
