#include "vector/VectorClasses.h"

#include "scene/MemberClasses.h"
#include "vector/edges/ProfileL.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

void registerVectorClasses() {
    registerMemberClass<ProfileI>("ProfileI", "profile");
    registerMemberClass<ProfileL>("ProfileL", "profile");
}

}  // namespace orvin
