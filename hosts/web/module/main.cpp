#include "hosts/web/bridge/bridge.h"

// The module is the bridge alone; a program needs a source file.
