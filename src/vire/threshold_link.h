// Threshold link sources ("/CONTEXT/SERVER/DEVICE[PROPERTY]") read through the
// middleware: the one hook that the viewer window, the tools and the tests
// give the catalogue, so that all of them read link sources alike.
#pragma once

#include "catalogue/catalogue.h"

namespace vire {

// The catalogue's link reader: one ReadFloats call (SINGLE, access 1) on the
// installed transport with the reader's time-out. Without a transport every
// read answers 50 (no transport).
catalogue::ThresholdLinkRead ThresholdLinkReader();

// Sets cat.ThresholdLink to ThresholdLinkReader().
void InstallThresholdLink(catalogue::Catalogue& cat);

}  // namespace vire
