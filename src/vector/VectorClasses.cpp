#include "vector/VectorClasses.h"

#include "scene/MemberClasses.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

void registerVectorClasses() {
    registerMemberClass<ProfileI>("ProfileI", "profile");
}

}  // namespace orvin
