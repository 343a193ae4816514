// The editor runners of the application object.
#include "dialogs/Editors.h"

#include "services/Opterecenje.h"

void opterecenje::PostaviEditore() {}
