#pragma once
// Module-wide settings that the records read and the module's application object owns
// (COpterecenjeApp::gbTeorija and COpterecenjeApp::NapraviImeDDASlOpt refer to these), kept
// here so that the records do not reach up to the services.
#include "framework/String.h"

struct CModelGlobals {
    /// Analysis theory: 1, results of a combination are the factor-weighted sum of the load
    /// cases' results; any other value, each combination is analysed by itself.
    static inline int nTeorija = 1;
    /// The host's rule for naming load cases with the NDA mark; null when the host has none.
    static inline void (*pfnNapraviImeDDASlOpt)(CString& naziv) = nullptr;
};
