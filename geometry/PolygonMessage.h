// The one thing that a polygon says to the user.
#pragma once

/// Tells that there was no memory for a polygon's vertices.
void ShowPolygonMemoryMessage();
