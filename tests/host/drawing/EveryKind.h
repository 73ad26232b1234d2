// A drawing file with an entity of every kind, for tests that change what was read.
#pragma once

#include "tests/host/drawing/DxfText.h"

namespace velmor::test {

/// One of each kind, in the plane and (turned over) seen from below, with tags that the host doesn't look at.
inline std::string everyKindFile()
{
    return dxf(
        "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $HANDSEED\n5 1000\n0 ENDSEC\n"
        "0 SECTION\n2 BLOCKS\n0 BLOCK\n5 A0\n8 0\n2 Box\n70 2\n10 0\n20 0\n30 0\n"
        "0 ATTDEF\n5 A1\n8 0\n10 1\n20 1\n40 1\n1 x\n3 Name\n2 NAME\n70 0\n"
        "0 ENDBLK\n5 A2\n8 0\n0 ENDSEC\n"
        "0 SECTION\n2 ENTITIES\n"
        "0 LINE\n5 20\n8 0\n6 DASHED\n10 1.50\n20 2.0\n30 3.0\n11 4.0\n21 5.0\n31 6.0\n"
        "0 CIRCLE\n5 21\n8 0\n39 0.5\n10 10.0\n20 10.0\n40 2.0\n"
        "0 CIRCLE\n5 22\n8 0\n10 -10.0\n20 10.0\n30 0.0\n40 2.0\n210 0.0\n220 0.0\n230 -1.0\n"
        "0 ARC\n5 23\n8 0\n10 20.0\n20 0.0\n40 5.0\n50 0.0\n51 90.0\n"
        "0 ELLIPSE\n5 24\n8 0\n10 30.0\n20 0.0\n30 0.0\n11 4.0\n21 0.0\n31 0.0\n40 0.5\n41 0.0\n42 6.283185307179586\n"
        "0 LWPOLYLINE\n5 25\n8 0\n90 3\n70 1\n43 0.25\n38 7.0\n10 0.1\n20 0.2\n42 0.5\n10 10.1\n20 0.2\n10 5.0\n20 "
        "9.0\n"
        "1001 OTHER\n1000 kept\n1040 0.1\n"
        "0 LWPOLYLINE\n5 26\n8 0\n90 2\n70 0\n10 1.0\n20 2.0\n10 3.0\n20 4.0\n210 0.0\n220 0.0\n230 -1.0\n"
        "0 POLYLINE\n5 27\n8 0\n66 1\n10 0.0\n20 0.0\n30 2.0\n70 1\n"
        "0 VERTEX\n5 28\n8 0\n10 0.0\n20 0.0\n30 2.0\n0 VERTEX\n5 29\n8 0\n10 5.0\n20 0.0\n30 2.0\n42 1.0\n"
        "0 SEQEND\n5 2A\n8 0\n"
        "0 POLYLINE\n5 2B\n8 0\n66 1\n10 0.0\n20 0.0\n30 0.0\n70 8\n"
        "0 VERTEX\n5 2C\n8 0\n10 1.0\n20 2.0\n30 3.0\n70 32\n0 VERTEX\n5 2D\n8 0\n10 4.0\n20 5.0\n30 6.0\n70 32\n"
        "0 SEQEND\n5 2E\n8 0\n"
        "0 TEXT\n5 2F\n8 0\n10 1.0\n20 1.0\n30 0.0\n40 2.0\n1 Ulica\n72 1\n11 3.0\n21 1.0\n31 0.0\n7 FANCY\n"
        "0 MTEXT\n5 30\n8 0\n10 7.0\n20 8.0\n30 0.0\n40 2.0\n71 1\n1 Two\\Plines\n11 0.0\n21 1.0\n31 0.0\n"
        "0 POINT\n5 31\n8 0\n10 6.0\n20 7.0\n30 8.0\n"
        "0 SPLINE\n5 32\n8 0\n70 8\n71 3\n72 8\n73 4\n74 0\n40 0.0\n40 0.0\n40 0.0\n40 0.0\n40 1.0\n40 1.0\n40 1.0\n40 "
        "1.0\n"
        "12 1.0\n22 0.0\n32 0.0\n10 0.0\n20 0.0\n30 0.0\n10 1.0\n20 2.0\n30 0.0\n10 3.0\n20 2.0\n30 0.0\n10 4.0\n20 "
        "0.0\n30 0.0\n"
        "0 INSERT\n5 33\n8 0\n66 1\n2 Box\n10 50.0\n20 60.0\n30 0.0\n41 2.0\n"
        "0 ATTRIB\n5 34\n8 0\n10 52.0\n20 62.0\n30 0.0\n40 2.0\n1 M1\n2 NAME\n70 0\n0 SEQEND\n5 35\n8 0\n"
        "0 HATCH\n5 36\n8 0\n10 0.0\n20 0.0\n30 0.0\n210 0.0\n220 0.0\n230 1.0\n2 ANSI31\n70 0\n71 0\n91 2\n"
        "92 3\n72 0\n73 1\n93 4\n10 0.0\n20 0.0\n10 9.0\n20 0.0\n10 9.0\n20 9.0\n10 0.0\n20 9.0\n97 0\n"
        "92 0\n93 1\n72 3\n10 4.0\n20 4.0\n11 2.0\n21 0.0\n40 0.5\n50 0.0\n51 360.0\n73 1\n97 0\n"
        "75 0\n76 1\n52 0.0\n41 1.0\n77 0\n78 1\n53 45.0\n43 0.5\n44 0.5\n45 -2.2\n46 2.2\n79 0\n98 1\n10 1.0\n20 1.0\n"
        "440 33554559\n"
        "0 3DFACE\n5 37\n8 0\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n12 1.0\n22 1.0\n32 0.0\n13 0.0\n23 "
        "1.0\n33 0.0\n"
        "0 ENDSEC\n0 EOF\n");
}

} // namespace velmor::test
