#include "tests/treelist/PinnedFont.h"

#include <QByteArray>
#include <QFontDatabase>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr char kFamily[] = "Velmor Pinned";
constexpr int kPixel = 128; // font units of one pixel at 8 pixels to the em
constexpr int kEm = 1024, kAdvance = 6 * kPixel, kAscent = 8 * kPixel, kDescent = 2 * kPixel;
constexpr int kRows = 7; // above the base line; further rows stand below

/// Rows from the top, two hexadecimal digits each; the highest of five bits is the left pixel.
struct Letter {
    int code;
    std::string_view rows;
};
constexpr Letter kLetters[] = {
    {' ', ""},
    {'%', "19190204081313"},
    {'(', "02040808080402"},
    {')', "08040202020408"},
    {'+', "0004041F040400"},
    {',', "00000000000C0408"},
    {'-', "0000000E000000"},
    {'.', "00000000000C0C"},
    {'/', "01010204081010"},
    {'0', "0E11131519110E"},
    {'1', "040C040404040E"},
    {'2', "0E11010608101F"},
    {'3', "1F02040201110E"},
    {'4', "02060A121F0202"},
    {'5', "1F101E0101110E"},
    {'6', "0608101E11110E"},
    {'7', "1F010204040404"},
    {'8', "0E11110E11110E"},
    {'9', "0E11110F01020C"},
    {':', "000C0C000C0C00"},
    {'A', "0E11111F111111"},
    {'B', "1E11111E11111E"},
    {'C', "0E11101010110E"},
    {'D', "1E11111111111E"},
    {'E', "1F10101E10101F"},
    {'F', "1F10101E101010"},
    {'G', "0E11101711110F"},
    {'H', "1111111F111111"},
    {'I', "0E04040404040E"},
    {'J', "0702020202120C"},
    {'K', "11121418141211"},
    {'L', "1010101010101F"},
    {'M', "111B1515111111"},
    {'N', "11191513111111"},
    {'O', "0E11111111110E"},
    {'P', "1E11111E101010"},
    {'Q', "0E11111115120D"},
    {'R', "1E11111E141211"},
    {'S', "0F10100E01011E"},
    {'T', "1F040404040404"},
    {'U', "1111111111110E"},
    {'V', "11111111110A04"},
    {'W', "11111115151B11"},
    {'X', "11110A040A1111"},
    {'Y', "11110A04040404"},
    {'Z', "1F01020408101F"},
    {'a', "00000E010F110F"},
    {'b', "10101E1111111E"},
    {'c', "00000E1110110E"},
    {'d', "01010F1111110F"},
    {'e', "00000E111F100E"},
    {'f', "06081E08080808"},
    {'g', "00000F1111110F010E"},
    {'h', "10101E11111111"},
    {'i', "04000C0404040E"},
    {'j', "02000602020202120C"},
    {'k', "10101214181412"},
    {'l', "0C04040404040E"},
    {'m', "00001A15151515"},
    {'n', "00001E11111111"},
    {'o', "00000E1111110E"},
    {'p', "00001E1111111E1010"},
    {'q', "00000F1111110F0101"},
    {'r', "00001619101010"},
    {'s', "00000F100E011E"},
    {'t', "08081E08080906"},
    {'u', "0000111111110F"},
    {'v', "00001111110A04"},
    {'w', "0000111515150A"},
    {'x', "0000110A040A11"},
    {'y', "0000111111110F010E"},
    {'z', "00001F0204081F"},
    {0x2026, "00000000000015"},
};
constexpr std::string_view kBox = "1F11111111111F";

/// What a font file is written with: numbers with the highest byte first.
class Bytes {
public:
    Bytes &U8(int value)
    {
        m_bytes.append(static_cast<char>(value));
        return *this;
    }
    Bytes &U16(int value) { return U8(value >> 8).U8(value & 0xFF); }
    Bytes &U32(std::uint32_t value) { return U16(static_cast<int>(value >> 16)).U16(static_cast<int>(value & 0xFFFF)); }
    Bytes &Zeros(int count)
    {
        m_bytes.append(count, '\0');
        return *this;
    }
    Bytes &Append(const QByteArray &bytes)
    {
        m_bytes.append(bytes);
        return *this;
    }
    void Pad()
    {
        while (m_bytes.size() % 4 != 0)
            U8(0);
    }
    int Size() const { return static_cast<int>(m_bytes.size()); }
    const QByteArray &All() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

/// Each run of pixels is a rectangle of its own.
QByteArray outlineOf(std::string_view rows)
{
    struct Run {
        int left, right, top, bottom;
    };
    std::vector<Run> runs;
    for (int row = 0; row < static_cast<int>(rows.size() / 2); ++row) {
        const long bits =
            std::strtol(std::string(rows.substr(static_cast<std::size_t>(row) * 2, 2)).c_str(), nullptr, 16);
        for (int column = 0; column < 5;) {
            const auto isSet = [bits](int at) { return at < 5 && (bits >> (4 - at) & 1) != 0; };
            const int begin = column++;
            if (!isSet(begin))
                continue;
            while (isSet(column))
                ++column;
            const int top = (kRows - row) * kPixel;
            runs.push_back({begin * kPixel, column * kPixel, top, top - kPixel});
        }
    }
    if (runs.empty())
        return {};
    Bytes glyph;
    glyph.U16(static_cast<int>(runs.size())).U16(0).U16(-kDescent).U16(5 * kPixel).U16(kRows * kPixel);
    for (int run = 0; run < static_cast<int>(runs.size()); ++run)
        glyph.U16(run * 4 + 3);
    glyph.U16(0); // no instructions
    for (std::size_t point = 0; point < runs.size() * 4; ++point)
        glyph.U8(1); // on the curve, both steps in two bytes
    int last = 0;
    const auto step = [&](int to) { glyph.U16(to - std::exchange(last, to)); };
    for (const Run &run : runs) {
        for (const int x : {run.left, run.left, run.right, run.right})
            step(x);
    }
    last = 0;
    for (const Run &run : runs) {
        for (const int y : {run.bottom, run.top, run.top, run.bottom})
            step(y);
    }
    glyph.Pad();
    return glyph.All();
}

/// Number of a character's glyph; 0 is the box.
int glyphOf(int code)
{
    const auto *found = std::find_if(std::begin(kLetters), std::end(kLetters),
                                     [code](const Letter &letter) { return letter.code == code; });
    return found == std::end(kLetters) ? 0 : static_cast<int>(found - std::begin(kLetters)) + 1;
}

/// Characters to glyphs, through a table of all of them: ASCII, accented letters, and some signs.
QByteArray characterMap()
{
    struct Range {
        int first, last;
    };
    constexpr Range kRanges[] = {{0x20, 0x7E}, {0xA0, 0x17F}, {0x2010, 0x2026}, {0xFFFF, 0xFFFF}};
    constexpr int kSegments = 4;
    Bytes table;
    table.U16(kSegments * 2).U16(8).U16(2).U16(0);
    for (const Range &range : kRanges)
        table.U16(range.last);
    table.U16(0);
    for (const Range &range : kRanges)
        table.U16(range.first);
    table.U16(0).U16(0).U16(0).U16(1);
    int glyphs = 0;
    for (int segment = 0; segment < kSegments; ++segment) {
        const Range &range = kRanges[segment];
        // From the place of this number to the range's first glyph.
        table.U16(range.first == 0xFFFF ? 0 : (kSegments - segment + glyphs) * 2);
        glyphs += range.last - range.first + 1;
    }
    for (const Range &range : kRanges) {
        for (int code = range.first; range.first != 0xFFFF && code <= range.last; ++code)
            // A box of its own number: the first glyph stands for what is missing.
            table.U16(code == 0x20 || glyphOf(code) != 0 ? glyphOf(code) : static_cast<int>(std::size(kLetters)) + 1);
    }
    Bytes map;
    map.U16(0).U16(1).U16(3).U16(1).U32(12);
    map.U16(4).U16(table.Size() + 6).U16(0).Append(table.All());
    return map.All();
}

QByteArray names()
{
    const std::pair<int, const char *> records[] = {{1, kFamily}, {2, "Regular"}, {4, kFamily}, {6, "VelmorPinned"}};
    Bytes head, texts;
    head.U16(0).U16(static_cast<int>(std::size(records))).U16(6 + 12 * static_cast<int>(std::size(records)));
    for (const auto &[id, text] : records) {
        const int begin = texts.Size();
        for (const char *letter = text; *letter; ++letter)
            texts.U16(*letter);
        head.U16(3).U16(1).U16(0x409).U16(id).U16(texts.Size() - begin).U16(begin);
    }
    return head.Append(texts.All()).All();
}

QByteArray fontFile()
{
    std::vector<QByteArray> glyphs = {outlineOf(kBox)};
    for (const Letter &letter : kLetters)
        glyphs.push_back(outlineOf(letter.rows));
    glyphs.push_back(outlineOf(kBox));
    const int count = static_cast<int>(glyphs.size());

    Bytes outlines, places, metrics;
    for (const QByteArray &glyph : glyphs) {
        places.U32(static_cast<std::uint32_t>(outlines.Size()));
        metrics.U16(kAdvance).U16(0);
        outlines.Append(glyph);
    }
    places.U32(static_cast<std::uint32_t>(outlines.Size()));

    Bytes head, lines, most, post, os2;
    head.U32(0x00010000).U32(0x00010000).U32(0).U32(0x5F0F3CF5).U16(0x000B).U16(kEm).Zeros(16);
    head.U16(0).U16(-kDescent).U16(5 * kPixel).U16(kAscent).U16(0).U16(8).U16(2).U16(1).U16(0);
    lines.U32(0x00010000).U16(kAscent).U16(-kDescent).U16(0).U16(kAdvance).U16(0).U16(0).U16(5 * kPixel);
    lines.U16(1).U16(0).U16(0).Zeros(8).U16(0).U16(count);
    most.U32(0x00010000).U16(count).U16(200).U16(50).U16(0).U16(0).U16(2).Zeros(16);
    post.U32(0x00030000).Zeros(28);
    os2.U16(4).U16(kAdvance).U16(400).U16(5).U16(0).Zeros(20).U16(0).Zeros(10);
    os2.U32(0x7).U32(0).U32(0).U32(0).U32(0x56454C4D).U16(0x40).U16(0x20).U16(0x2026);
    os2.U16(kAscent).U16(-kDescent).U16(0).U16(kAscent).U16(kDescent).U32(0x3).U32(0);
    os2.U16(5 * kPixel).U16(kRows * kPixel).U16(0).U16(0x20).U16(1);

    const std::pair<const char *, QByteArray> tables[] = {
        {"OS/2", os2.All()},   {"cmap", characterMap()}, {"glyf", outlines.All()}, {"head", head.All()},
        {"hhea", lines.All()}, {"hmtx", metrics.All()},  {"loca", places.All()},   {"maxp", most.All()},
        {"name", names()},     {"post", post.All()}};
    const int tableCount = static_cast<int>(std::size(tables));
    Bytes file, body;
    file.U32(0x00010000).U16(tableCount).U16(128).U16(3).U16(tableCount * 16 - 128);
    const int begin = 12 + 16 * tableCount;
    for (const auto &[tag, table] : tables) {
        body.Pad();
        file.Append(QByteArray(tag, 4)).U32(0).U32(static_cast<std::uint32_t>(begin + body.Size()));
        file.U32(static_cast<std::uint32_t>(table.size()));
        body.Append(table);
    }
    body.Pad();
    return file.Append(body.All()).All();
}

} // namespace

QFont PinnedFont()
{
    if (!QFontDatabase::families().contains(QLatin1String(kFamily)))
        QFontDatabase::addApplicationFontFromData(fontFile());
    QFont font{QString::fromLatin1(kFamily)};
    font.setPixelSize(8);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::NoSubpixelAntialias | QFont::NoFontMerging));
    font.setKerning(false);
    return font;
}
