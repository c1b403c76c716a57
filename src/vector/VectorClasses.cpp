#include "vector/VectorClasses.h"

#include "scene/MemberClasses.h"
#include "vector/ProfileM.h"
#include "vector/ProfileT.h"
#include "vector/edges/ProfileL.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

void registerVectorClasses() {
    registerMemberClass<ProfileI>("ProfileI", "profile");
    registerMemberClass<ProfileL>("ProfileL", "profile");
    registerMemberClass<ProfileM>("ProfileM", "profile");
    registerMemberClass<ProfileT>("ProfileT", "profile");
}

}  // namespace orvin
