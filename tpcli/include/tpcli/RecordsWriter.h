// `tpcli --records`: the show object's cached state as one JSON document, built from reflection.
// Every attribute of the show object and of every record it holds is written; entities of other
// modules that the records point to are written as a short reference (type and name), not whole.
#pragma once

#include "TrafficPolicyCli/ShowCommand.h"

namespace tpcli {

// Writes the document onto `fd`; write failures surface as from rendering.
void writeRecords(TrafficPolicyCli::ShowCommand const& command, int fd);

}  // namespace tpcli
