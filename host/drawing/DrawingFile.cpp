// Drawings from files and into files.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/FileMark.h"
#include "host/drawing/Texts.h"
#include "host/drawing/dxf/AtomicFile.h"
#include "host/drawing/dxf/BinaryDxf.h"
#include "host/drawing/dxf/DxfReader.h"
#include "host/drawing/dxf/DxfWriter.h"
#include "host/drawing/dxf/Skeleton.h"

#include <algorithm>
#include <cassert>
#include <functional>

namespace velmor {

namespace {

LoadResult refused(FileStatus status, std::string message)
{
    LoadResult result;
    result.status = status;
    result.message = std::move(message);
    return result;
}

/// Why bytes that hold no section are no drawing.
std::string reasonOf(std::string_view bytes)
{
    if (bytes.size() > 6 && bytes.starts_with("AC1") && bytes.substr(0, 6).find('\n') == std::string_view::npos)
        return drawingText("file.dwg");
    return drawingText("file.noSection");
}

/// Progress of a part of the work, told as that of all of it.
std::function<bool(double)> partOf(const LoadOptions &options, double from, double share)
{
    if (!options.progress)
        return {};
    return [&options, from, share](double done) { return options.progress(from + share * done); };
}

} // namespace

std::unique_ptr<Drawing> Drawing::createNew()
{
    LoadResult result = read(newDrawingText());
    assert(result.drawing);
    result.drawing->d->report = {};
    result.drawing->d->report.version = result.drawing->d->version;
    result.drawing->d->report.codePage = result.drawing->d->file.codec.name();
    return std::move(result.drawing);
}

LoadResult Drawing::load(const std::filesystem::path &path, const LoadOptions &options)
{
    // Getting the bytes is the shorter part of the work.
    constexpr double kReadingShare = 0.1;
    std::string mark = markOf(path); // before it is read: who writes it meanwhile changes it
    ReadFileResult file = readWholeFile(path, partOf(options, 0.0, kReadingShare));
    if (!file)
        return refused(file.status, std::move(file.message));
    LoadResult result = read(std::move(file.bytes), {partOf(options, kReadingShare, 1.0 - kReadingShare)});
    if (result.drawing) {
        result.drawing->d->file.path = std::filesystem::absolute(path);
        result.drawing->component<FileMark>().set(path, std::move(mark));
    } else
        result.message = path.string() + ": " + result.message;
    return result;
}

LoadResult Drawing::read(std::string bytes, const LoadOptions &options)
try {
    if (bytes.empty())
        return refused(FileStatus::Empty, drawingText("file.empty"));
    constexpr double kUnpackingShare = 0.4; // of a binary file
    std::optional<BinaryDxfText> binary;
    if (isBinaryDxf(bytes)) {
        binary = binaryToText(bytes, partOf(options, 0.0, kUnpackingShare));
        if (binary->cancelled)
            throw dxf::ReadingCancelled();
        bytes = std::move(binary->text);
    }
    const double readFrom = binary ? kUnpackingShare : 0.0;
    if (bytes.find('\n') == std::string::npos)
        std::replace(bytes.begin(), bytes.end(), '\r', '\n'); // lines of an old Macintosh

    std::vector<Finding> cuts;
    // A text that was cut off is closed properly and read again, once.
    for (int pass = 0;; ++pass) {
        std::unique_ptr<Drawing> drawing(new Drawing);
        Private &p = *drawing->d;
        p.file.text = std::move(bytes);
        dxf::DxfReader reader(p, partOf(options, readFrom, 1.0 - readFrom));
        const bool isDrawing = reader.run();
        const dxf::DxfReader::Cut &cut = reader.cut();
        const bool isCut = isDrawing && cut.offset != dxf::kNowhere;
        if (!isDrawing || (isCut && pass > 0))
            return refused(FileStatus::NotADrawing,
                           cuts.empty() ? reasonOf(p.file.text)
                                        : drawingText("file.lineText", {std::to_string(cuts[0].line), cuts[0].text}));
        if (isCut) {
            cuts.push_back({Severity::Damage, cut.line, cut.message});
            bytes = p.file.text.substr(0, cut.offset);
            if (!bytes.empty() && bytes.back() != '\n')
                bytes += p.file.lineEnd;
            bytes += cut.closing;
            continue;
        }
        auto &findings = p.report.findings;
        findings.insert(findings.end(), cuts.begin(), cuts.end());
        p.report.binary = binary.has_value();
        if (binary) {
            for (Finding &finding : findings)
                if (finding.line != 0)
                    finding.line = binary->offsetOfLine(finding.line);
            findings.insert(findings.begin(), binary->findings.begin(), binary->findings.end());
        }
        p.revision = 1;
        LoadResult result;
        result.report = p.report;
        result.drawing = std::move(drawing);
        return result;
    }
} catch (const dxf::ReadingCancelled &) {
    return refused(FileStatus::Cancelled, drawingText("file.cancelled"));
}

std::string Drawing::write()
{
    return dxf::DxfWriter(*d).text();
}

SaveResult Drawing::save(const std::filesystem::path &path, const SaveOptions &options)
{
    if (d->report.damaged() && !options.overwriteDamaged && !d->file.path.empty() && isSameFile(path, d->file.path))
        return {FileStatus::Refused, drawingText("file.damaged", {path.string()})};
    dxf::DxfWriter writer(*d);
    const auto pieces = writer.pieces();
    SaveResult result = writeFileAtomically(path, pieces, options.backup);
    if (result && !options.isCopy) {
        d->modified = false;
        component<FileMark>().set(path, markOf(path));
        if (d->log)
            d->log->saved();
        // From now on the whole drawing stands there, so saving again destroys nothing.
        if (options.overwriteDamaged && !d->file.path.empty() && isSameFile(path, d->file.path))
            d->file.path.clear();
    }
    return result;
}

} // namespace velmor
