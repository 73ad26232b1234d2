// The box that the tables of keys run on: they are built twice, on the fake box and on the real widget.
#pragma once

#ifdef VELMOR_EDITS_ON_WIDGETS
#include "tests/controls/WidgetEditBox.h"
using SequenceBox = WidgetEditBox;
#else
#include "tests/controls/FakeEditBox.h"
using SequenceBox = FakeEditBox;
#endif
