#include "geometry/PolygonMessage.h"

#include "contracts/DrawingHost.h"

void ShowPolygonMemoryMessage()
{
    acedAlert(L"Unable to allocate sufficient memory for polygon");
}
