// Where lumiscope-config reads threshold link sources ("DEV[PROP]") from.
#pragma once

#include <string>

#include "catalogue/catalogue.h"

// Gives the catalogue a link reader for threshold sources, answered by the
// simulated accelerator of simConfigDir (built once per run).
void InstallThresholdLink(catalogue::Catalogue& cat, const std::string& simConfigDir);
