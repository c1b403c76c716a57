// The member classes of this folder: the kinds of profile.
#pragma once

namespace orvin {

void registerVectorClasses();

}  // namespace orvin
