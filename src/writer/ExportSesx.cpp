// The document frame: what stands around the tracks, in writing order
// (docs/format/document.md).
#include "writer/ExportSesx.h"

#include <cmath>
#include <utility>

#include "services/ProgramVersion.h"
#include "writer/DocumentWriter.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

// "256 MiB" for whole mebibytes, else the bytes.
std::string SizeText(std::size_t bytes) {
    constexpr std::size_t kMebibyte = std::size_t{1} << 20;
    if (bytes >= kMebibyte && bytes % kMebibyte == 0) return std::to_string(bytes / kMebibyte) + " MiB";
    return std::to_string(bytes) + " bytes";
}

}  // namespace

DocumentTooLarge::DocumentTooLarge(std::size_t limit)
    : std::runtime_error("the document would be larger than " + SizeText(limit) +
                         ", the most Morvanta writes for one session") {}

void SortClipsForWriting(std::vector<Clip>& clips) {
    auto greater = [](const Clip& a, const Clip& b) {
        return a.TrackOrdinal > b.TrackOrdinal || (a.TrackOrdinal == b.TrackOrdinal && a.Start > b.Start);
    };
    // The assembly has sorted the clips already. On a list in order the
    // exchange sort swaps nothing, so one look at each neighbour saves its
    // quadratic walk.
    bool inOrder = true;
    for (std::size_t i = 0; inOrder && i < clips.size(); ++i) {
        if (std::isnan(clips[i].Start) || (i + 1 < clips.size() && greater(clips[i], clips[i + 1]))) inOrder = false;
    }
    if (inOrder) return;
    for (std::size_t i = 0; i < clips.size(); ++i) {
        for (std::size_t j = i + 1; j < clips.size(); ++j) {
            if (greater(clips[i], clips[j])) std::swap(clips[i], clips[j]);
        }
    }
}

DocumentWriter::DocumentWriter(const Session& s, const ConvertOptions& o, std::vector<Diagnostic>& w)
    : session(s), options(o), warnings(w), Clips(s.Clips), GroupItemIds(s.Clips.size(), 0) {
    Tracks.reserve(s.Tracks.size());
    const Track* master = nullptr;
    for (const Track& track : s.Tracks) {
        if (track.TrackId != kMasterTrackId) Tracks.push_back(track);
        else if (!master) master = &track;
    }
    if (master) {
        Tracks.push_back(*master);
        MasterWritten = true;
    }
    SortClipsForWriting(Clips);
}

std::string ExportSesxFile(const Session& session, const ConvertOptions& options,
                           const std::string& OutputPath, std::vector<Diagnostic>& warnings,
                           TextSpan* nameSpan) {
    DocumentWriter w(session, options, warnings);

    w.Line(R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>)");
    w.Line("<!DOCTYPE sesx>");
    w.Line(R"(<sesx appVersion="5.0" version="1.0">)");
    w.Line("");
    w.Line(R"(<session audioChannelType="stereo" bitDepth="32" duration="0" sampleRate=")" +
           IntegerText(session.SampleRate) + R"(">)");
    const std::string name = w.Text(EscapeText(TrimBlanks(FileNameOf(OutputPath))));
    if (nameSpan) *nameSpan = {w.out.size() + std::string_view("<name>").size(), name.size()};
    w.Line("<name>" + name + "</name>");
    w.Line("<tracks>");
    WriteTracks(w);
    ReportMoreClipsLeftOut(w);
    w.Line("</tracks>");
    WriteSessionState(w);
    WriteCueMarkers(w);
    WriteClipGroups(w);
    WriteMetronome(w);
    w.Line("</session>");
    WriteFiles(w);
    w.Line("</sesx>");
    // A comment must not hold "--", which a source name such as
    // "mix--final.ses" or a version text may bring in.
    const std::string converted = "Converted " + MakeCommentSafe(TrimBlanks(session.SourcePath), options.NonEnglish) +
                                  " (" + session.SesVersion + ")";
    w.Line("<!-- " + (options.WellFormed ? SeparateHyphens(converted) : converted) + " --> ");
    w.Line("<!-- Converted by " + std::string(kProgramName) + " - Version " + VersionText() + " --> ");
    return std::move(w.out);
}

}  // namespace morvanta
