#include "vector/VectorClasses.h"

namespace orvin {

void registerVectorClasses() {}

}  // namespace orvin
