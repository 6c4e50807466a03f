// Assembly of cue markers and of the file list from the raw cue and wave
// records (docs/format/session.md, docs/format/media.md).
#include <algorithm>
#include <cctype>

#include "model/VersionClasses.h"
#include "reader/Assembly.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::string_view kAudioForPrefix = "Audio for ";

std::string WithoutZeros(std::string text) {
    std::erase(text, '\0');
    return text;
}

std::string Upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::int32_t WithFileIdOffset(std::int32_t waveId, bool small) {
    if (!small) return waveId;
    return static_cast<std::int32_t>(static_cast<std::int64_t>(waveId) + kSmallFileIdOffset);
}

// A name that does not end in its tag has lost its extension, unless it has
// another one: a "." four characters from the end.
bool HasOwnExtension(const std::string& clean) {
    return clean.size() >= 4 && clean[clean.size() - 4] == '.';
}

// Sound extracted from a video was saved as "Audio for <name>"; the prefix
// goes, the folder stays.
std::string WithoutAudioForPrefix(const std::string& path) {
    if (path.find(kAudioForPrefix) == std::string::npos) return path;
    const auto separator = path.find_last_of("\\/");
    std::string folder = separator == std::string::npos ? std::string() : path.substr(0, separator);
    if (!folder.ends_with('\\')) folder += '\\';
    if (folder == "\\") folder.clear();
    std::string name = separator == std::string::npos ? path : path.substr(separator + 1);
    if (name.starts_with(kAudioForPrefix)) name.erase(0, kAudioForPrefix.size());
    return folder + name;
}

}  // namespace

void BuildCueMarkers(Session& session) {
    for (const SesCue& cue : session.SesCues) {
        CueMarker marker;
        marker.Start = cue.Start;
        marker.Length = cue.Length;
        marker.Name = FixedText(TrimBlanks(cue.Name));
        marker.Comment = FixedText(TrimBlanks(cue.Comment));
        session.CueMarkers.push_back(std::move(marker));
    }
}

void BuildSessionFiles(Session& session, const ConvertOptions&) {
    const std::string& v = session.SesVersion;

    // Video files come first, wherever they stand in the list.
    const bool smallVideoIds = Pro12(v) || Pro21(v) || Aud10(v);
    for (const SesWave& wave : session.SesWaves) {
        if (Upper(wave.Tag) != "VDEO") continue;
        SessionFile file;
        file.Path = FixedText(WithoutZeros(TrimBlanks(wave.Name)));
        file.Kind = kFileKindVideo;
        file.FileId = WithFileIdOffset(wave.WaveId, smallVideoIds);
        session.SessionFiles.push_back(std::move(file));
        session.VideoSeen = true;
    }

    const bool smallAudioIds = Ce2000(v) || Pro12(v) || Pro21(v) || Aud10(v);
    for (const SesWave& wave : session.SesWaves) {
        if (Upper(wave.Tag) == "VDEO" || Lower(TrimBlanks(wave.Tag)) == "midi") continue;
        SessionFile file;
        const std::string clean = TrimBlanks(WithoutZeros(wave.Name));
        const std::string ext = TrimBlanks(wave.Tag);
        const std::string ending = clean.size() > ext.size() ? clean.substr(clean.size() - ext.size()) : clean;
        if (!clean.empty() && Upper(ext) != Upper(ending)) {
            file.Path = FixedText(HasOwnExtension(clean) ? clean : clean + "." + ext);
        } else {
            // Only a name that ends in its tag carries the length.
            file.Path = FixedText(clean);
            file.LengthSamples = wave.LengthSamples;
        }
        file.Kind = kFileKindAudio;
        file.Path = FixedText(WithoutAudioForPrefix(file.Path));
        file.Path = FixedText(WithoutZeros(file.Path));
        file.FileId = WithFileIdOffset(wave.WaveId, smallAudioIds);
        session.SessionFiles.push_back(std::move(file));
    }
}

}  // namespace morvanta
