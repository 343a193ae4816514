// A module whose set-up entry fails a check of the program, for the test that vorta-cli ends
// with its exit code of an internal error.
#include "diag/Assert.h"

class COptionInfoList;

extern "C" __attribute__((visibility("default"))) int VortaModuleSetUp(COptionInfoList* list) {
    VASSERT(list == nullptr);
    return 0;
}
