// A small drawing of 2000 to write into, and what a write changed.
#pragma once

#include "tests/host/drawing/DxfText.h"

namespace velmor::test {

/// A small drawing of 2000 with a bit of everything that must stay.
inline std::string drawing2000(std::string_view entities = "")
{
    return dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 ANSI_1250\n9 $HANDSEED\n5 200\n9 "
               "$CLAYER\n8 0\n0 ENDSEC\n"
               "0 SECTION\n2 CLASSES\n0 CLASS\n1 MINE\n0 ENDSEC\n"
               "0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n5 2\n330 0\n100 AcDbSymbolTable\n70 1\n"
               "0 LAYER\n5 10\n330 2\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 0\n70 0\n62 7\n6 "
               "CONTINUOUS\n390 F\n"
               "0 LAYER\n5 11\n330 2\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 K\n70 0\n62 3\n420 255\n6 "
               "CONTINUOUS\n390 F\n1001 OTHER\n1000 kept\n"
               "0 ENDTAB\n0 TABLE\n2 BLOCK_RECORD\n5 1\n330 0\n100 AcDbSymbolTable\n70 2\n"
               "0 BLOCK_RECORD\n5 1F\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 *Model_Space\n340 "
               "0\n"
               "0 BLOCK_RECORD\n5 1B\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 *Paper_Space\n340 "
               "0\n"
               "0 BLOCK_RECORD\n5 30\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 MH\n340 0\n0 "
               "ENDTAB\n0 ENDSEC\n"
               "0 SECTION\n2 BLOCKS\n"
               "0 BLOCK\n5 20\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 *Model_Space\n70 0\n10 0\n20 0\n30 "
               "0\n3 *Model_Space\n1 \n0 ENDBLK\n5 21\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
               "0 BLOCK\n5 31\n330 30\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 MH\n70 0\n10 0\n20 0\n30 0\n3 MH\n1 "
               "\n"
               "0 CIRCLE\n5 32\n330 30\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 1\n0 ENDBLK\n5 "
               "33\n330 30\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n0 ENDSEC\n"
               "0 SECTION\n2 ENTITIES\n"
               "0 LINE\n5 40\n102 {ACAD_REACTORS\n330 99\n102 }\n330 1F\n100 AcDbEntity\n8 K\n370 25\n100 AcDbLine\n10 "
               "1.50\n20 2.00\n30 0\n11 3\n21 4\n31 0\n1001 OTHER\n1000 8\n1070 62\n"
               "0 STRANGE\n5 41\n330 1F\n100 AcDbEntity\n8 K\n100 AcDbStrange\n310 00FF\n"
               "0 INSERT\n5 42\n330 1F\n100 AcDbEntity\n8 K\n100 AcDbBlockReference\n66 1\n2 MH\n10 5\n20 6\n30 0\n"
               "0 ATTRIB\n5 43\n330 42\n100 AcDbEntity\n8 K\n100 AcDbText\n10 5\n20 6\n30 0\n40 1\n1 M1\n100 "
               "AcDbAttribute\n2 NAME\n70 0\n"
               "0 SEQEND\n5 44\n330 42\n100 AcDbEntity\n8 K\n") +
           dxf(entities) +
           dxf("0 ENDSEC\n0 SECTION\n2 OBJECTS\n"
               "0 DICTIONARY\n5 C\n330 0\n100 AcDbDictionary\n281 1\n3 ACAD_GROUP\n350 D\n3 SETTINGS\n350 50\n"
               "0 DICTIONARY\n5 D\n330 C\n100 AcDbDictionary\n281 1\n"
               "0 DICTIONARY\n5 50\n330 C\n100 AcDbDictionary\n281 1\n3 KEY\n350 51\n"
               "0 XRECORD\n5 51\n102 {ACAD_REACTORS\n330 50\n102 }\n330 50\n100 AcDbXrecord\n280 1\n1 old\n40 1.5\n0 "
               "ENDSEC\n"
               "0 SECTION\n2 FUTURE\n0 THING\n1 kept\n0 ENDSEC\n0 EOF\n");
}

/// The lines of a text that another does not have, and the other way round, in order: "-" taken out, "+" put in.
inline std::vector<std::string> difference(const std::string &before, const std::string &after)
{
    const auto tags = [](const std::string &text) {
        std::vector<std::string> lines;
        for (const auto &[code, value] : tagsOf(text))
            lines.push_back(std::to_string(code) + ' ' + value);
        return lines;
    };
    const auto a = tags(before), b = tags(after);
    // The longest common subsequence; the texts are small.
    std::vector<std::vector<int>> length(a.size() + 1, std::vector<int>(b.size() + 1));
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            length[i][j] = a[i] == b[j] ? length[i + 1][j + 1] + 1 : std::max(length[i + 1][j], length[i][j + 1]);
    std::vector<std::string> result;
    std::size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            ++i;
            ++j;
        } else if (j == b.size() || (i < a.size() && length[i + 1][j] >= length[i][j + 1])) {
            result.push_back('-' + a[i++]);
        } else {
            result.push_back('+' + b[j++]);
        }
    }
    return result;
}

inline AcDbEntity &byHandle(const Drawing &drawing, std::uint64_t handle)
{
    return dynamic_cast<AcDbEntity &>(*drawing.findByHandle(handle));
}

} // namespace velmor::test
