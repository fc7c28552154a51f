#pragma once

#include "generation.h"

namespace mxbook::fleet {

// Type data and maintenance programmes of every aircraft type, owners, oil
// types, and the type references of the components the fleet carries.
void writeReferenceData(Generation& generation);

// The key under which writeReferenceData filed a component's type reference.
std::string typeKeyOf(std::string_view aircraftType, std::string_view name, std::string_view drawingNumber);

}  // namespace mxbook::fleet
