// The library's own translation unit; its parts come in whole from the folders below.
#include "contracts/DrawingHost.h"
