#pragma once
// What `show --format json` prints for scripts: the same content as the text report (the
// module's tables, the theory, the global scale, the factor vectors of every load and the
// load selector in both modes) as one JSON document, written as it is made.
#include "HeadlessFrame.h"

#include <ostream>
#include <string>

void PrintModelJson(std::ostream& out, const std::string& file, CHeadlessFrame& frame);
