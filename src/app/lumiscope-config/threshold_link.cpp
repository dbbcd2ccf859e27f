#include "threshold_link.h"

// No middleware yet: link sources fail.
void InstallThresholdLink(catalogue::Catalogue&) {}
