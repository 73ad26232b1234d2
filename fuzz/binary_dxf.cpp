// Binary DXF from anywhere, and the text codecs over what it holds.
#include "fuzz/Require.h"
#include "host/drawing/dxf/BinaryDxf.h"
#include "host/drawing/dxf/TextCodec.h"

namespace {

/// What was decoded comes back the same however often it is written and read. In a double-byte page, half a pair before
/// an escape may join with it, so there only the reading itself is tried.
void checkCodecs(std::string_view bytes)
{
    using velmor::TextCodec;
    static const TextCodec codecs[] = {TextCodec::forDrawing("AC1027", ""),
                                       TextCodec::forDrawing("AC1015", "ANSI_1250"),
                                       TextCodec::forDrawing("AC1009", "DOS850")};
    for (const TextCodec &codec : codecs) {
        const std::string once = codec.encode(codec.decode(bytes));
        require(codec.encode(codec.decode(once)) == once || once.find('\\') != std::string::npos);
    }
    static const TextCodec doubleByte = TextCodec::forDrawing("AC1015", "ANSI_932");
    doubleByte.encode(doubleByte.decode(bytes));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    checkCodecs(input.substr(0, 200));
    // With the sentinel put before it, any input is a file worth reading.
    const std::string bytes = velmor::isBinaryDxf(input)
                                  ? std::string(input)
                                  : std::string("AutoCAD Binary DXF\r\n\x1a") + '\0' + std::string(input);
    const auto result = velmor::binaryToText(bytes);
    std::size_t lines = 0;
    for (const char c : result.text)
        lines += c == '\n';
    require(lines == 2 * result.offsets.size());
    for (std::size_t i = 0; i < result.offsets.size(); ++i)
        require(result.offsets[i] < bytes.size() && (i == 0 || result.offsets[i] > result.offsets[i - 1]));
    for (const velmor::Finding &finding : result.findings)
        require(finding.line <= bytes.size() && !finding.text.empty());
    require(!result.findings.empty() || result.text.ends_with("  0\nEOF\n"));
    return 0;
}
