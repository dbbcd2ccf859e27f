// Where lumiscope-config reads threshold link sources ("DEV[PROP]") from.
#pragma once

#include "catalogue/catalogue.h"

// Gives the catalogue a link reader for threshold sources, or leaves it
// without one (link sources then report -1).
void InstallThresholdLink(catalogue::Catalogue& cat);
